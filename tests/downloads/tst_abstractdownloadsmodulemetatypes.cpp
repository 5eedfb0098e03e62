#include "abstractdownloadsmodulemetatypes.h"

#include <QMetaType>
#include <QTest>

#include <array>

class TestAbstractDownloadsModuleMetatypes : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void registersInOrder();
};

void TestAbstractDownloadsModuleMetatypes::registersInOrder()
{
    constexpr std::array names{
        "AbstractDownloadPersistentInfo",
        "BitFlagsUpdateMode",
        "AbstractDownloadCommand",
        "NetworkTrafficDirection",
        "AbstractError",
        "QVector<qint64>",
        "QVector<quint64>",
        "AbstractDownloadCreatedBy",
        "AbstractDownloadPersistentInfoSortByPlusOrder",
        "QtHostAndPort",
        "QtConnectionsMap",
        "AbstractNewDownloadsRequest",
        "AbstractNewDownloadsRequestJob",
        "AbstractDownloadFileOps::FileInitializeOperation",
        "QVector<AbstractDownloadFileOps::FileInitializeOperation>",
        "AbstractDownloadPriority",
        "AbstractDownloadMergeOptions",
        "AbstractDownloadMergeTaskOptions",
        "CompareDownloadsResult",
        "AbstractDownloadAbortReason",
        "AbstractDownloadType",
        "QVector<AbstractDownloadType>",
        "AbstractDownloadFileExistsAction",
    };
    for (const char *name : names)
        QVERIFY2(!QMetaType::fromName(name).isValid(), name);

    qtRegisterAbstractDownloadsModuleMetatypes();

    int previous = QMetaType::User - 1;
    for (const char *name : names) {
        const QMetaType type = QMetaType::fromName(name);
        QVERIFY2(type.isValid(), name);
        QVERIFY2(type.id() > previous, name);
        previous = type.id();
    }

    // Once more changes nothing.
    qtRegisterAbstractDownloadsModuleMetatypes();
    QCOMPARE(QMetaType::fromName(names.back()).id(), previous);
}

QTEST_GUILESS_MAIN(TestAbstractDownloadsModuleMetatypes)
#include "tst_abstractdownloadsmodulemetatypes.moc"
