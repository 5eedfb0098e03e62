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
    // To normalize a name, which Qt does at every start, costs more than all the rest. Most are
    // already.
    qRegisterNormalizedMetaType<AbstractDownloadPersistentInfo>("AbstractDownloadPersistentInfo");
    qRegisterNormalizedMetaType<BitFlagsUpdateMode>("BitFlagsUpdateMode");
    qRegisterNormalizedMetaType<AbstractDownloadCommand>("AbstractDownloadCommand");
    qRegisterNormalizedMetaType<NetworkTrafficDirection>("NetworkTrafficDirection");
    qRegisterNormalizedMetaType<AbstractError>("AbstractError");
    qRegisterMetaType<QVector<qint64>>("QVector<qint64>");
    qRegisterMetaType<QVector<quint64>>("QVector<quint64>");
    qRegisterNormalizedMetaType<AbstractDownloadCreatedBy>("AbstractDownloadCreatedBy");
    qRegisterNormalizedMetaType<AbstractDownloadPersistentInfoSortByPlusOrder>(
        "AbstractDownloadPersistentInfoSortByPlusOrder");
    qRegisterNormalizedMetaType<QtHostAndPort>("QtHostAndPort");
    qRegisterNormalizedMetaType<QtConnectionsMap>("QtConnectionsMap");
    qRegisterNormalizedMetaType<AbstractNewDownloadsRequest>("AbstractNewDownloadsRequest");
    qRegisterNormalizedMetaType<AbstractNewDownloadsRequestJob>("AbstractNewDownloadsRequestJob");
    qRegisterNormalizedMetaType<FileInitializeOperation>(
        "AbstractDownloadFileOps::FileInitializeOperation");
    qRegisterMetaType<QVector<FileInitializeOperation>>(
        "QVector<AbstractDownloadFileOps::FileInitializeOperation>");
    qRegisterNormalizedMetaType<AbstractDownloadPriority>("AbstractDownloadPriority");
    qRegisterNormalizedMetaType<AbstractDownloadMergeOptions>("AbstractDownloadMergeOptions");
    qRegisterNormalizedMetaType<AbstractDownloadMergeTaskOptions>(
        "AbstractDownloadMergeTaskOptions");
    qRegisterNormalizedMetaType<CompareDownloadsResult>("CompareDownloadsResult");
    qRegisterNormalizedMetaType<AbstractDownloadAbortReason>("AbstractDownloadAbortReason");
    qRegisterNormalizedMetaType<AbstractDownloadType>("AbstractDownloadType");
    qRegisterMetaType<QVector<AbstractDownloadType>>("QVector<AbstractDownloadType>");
    qRegisterNormalizedMetaType<AbstractDownloadFileExistsAction>(
        "AbstractDownloadFileExistsAction");
}
