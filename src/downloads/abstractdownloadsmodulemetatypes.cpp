#include "abstractdownloadsmodulemetatypes.h"

#include "abstractdownloadenums.h"
#include "abstractdownloadfileops.h"
#include "abstractdownloadmergeoptions.h"
#include "abstractdownloadmergetaskoptions.h"
#include "abstractdownloadpersistentinfo.h"
#include "abstractdownloadpersistentinfosortbyplusorder.h"
#include "abstracterror.h"
#include "abstractnewdownloadsrequest.h"
#include "abstractnewdownloadsrequestjob.h"
#include "qtconnectionsmap.h"
#include "qthostandport.h"

#include <QMetaType>
#include <QVector>

void qtRegisterAbstractDownloadsModuleMetatypes()
{
    using AbstractDownloadFileOps::FileInitializeOperation;
    qRegisterMetaType<AbstractDownloadPersistentInfo>("AbstractDownloadPersistentInfo");
    qRegisterMetaType<BitFlagsUpdateMode>("BitFlagsUpdateMode");
    qRegisterMetaType<AbstractDownloadCommand>("AbstractDownloadCommand");
    qRegisterMetaType<NetworkTrafficDirection>("NetworkTrafficDirection");
    qRegisterMetaType<AbstractError>("AbstractError");
    qRegisterMetaType<QVector<qint64>>("QVector<qint64>");
    qRegisterMetaType<QVector<quint64>>("QVector<quint64>");
    qRegisterMetaType<AbstractDownloadCreatedBy>("AbstractDownloadCreatedBy");
    qRegisterMetaType<AbstractDownloadPersistentInfoSortByPlusOrder>(
        "AbstractDownloadPersistentInfoSortByPlusOrder");
    qRegisterMetaType<QtHostAndPort>("QtHostAndPort");
    qRegisterMetaType<QtConnectionsMap>("QtConnectionsMap");
    qRegisterMetaType<AbstractNewDownloadsRequest>("AbstractNewDownloadsRequest");
    qRegisterMetaType<AbstractNewDownloadsRequestJob>("AbstractNewDownloadsRequestJob");
    qRegisterMetaType<FileInitializeOperation>("AbstractDownloadFileOps::FileInitializeOperation");
    qRegisterMetaType<QVector<FileInitializeOperation>>(
        "QVector<AbstractDownloadFileOps::FileInitializeOperation>");
    qRegisterMetaType<AbstractDownloadPriority>("AbstractDownloadPriority");
    qRegisterMetaType<AbstractDownloadMergeOptions>("AbstractDownloadMergeOptions");
    qRegisterMetaType<AbstractDownloadMergeTaskOptions>("AbstractDownloadMergeTaskOptions");
    qRegisterMetaType<CompareDownloadsResult>("CompareDownloadsResult");
    qRegisterMetaType<AbstractDownloadAbortReason>("AbstractDownloadAbortReason");
    qRegisterMetaType<AbstractDownloadType>("AbstractDownloadType");
    qRegisterMetaType<QVector<AbstractDownloadType>>("QVector<AbstractDownloadType>");
    qRegisterMetaType<AbstractDownloadFileExistsAction>("AbstractDownloadFileExistsAction");
}
