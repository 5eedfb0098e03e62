// File types, cookies, URLs and header blocks. The tables are in downloads.json; texts of headers
// are bytes there, as Latin-1.

#include "abstractdownloadsmodulemetatypes.h"
#include "abstractfiletypedetector.h"
#include "cookiestring.h"
#include "httpheaderblock.h"
#include "urlchecks.h"
#include "vectors.h"

namespace {

QString appended(const QString &url, const QString &query, const QString &mode)
{
    const auto parsingMode = mode == u"strict" ? QUrl::StrictMode
        : mode == u"tolerant"                  ? QUrl::TolerantMode
                                               : QUrl::DecodedMode;
    return appendQuery(QUrl(url), query, parsingMode).toString(QUrl::FullyEncoded);
}

QString cookiesIn(const QString &text, const QString &separator)
{
    QByteArrayList found;
    for (const QNetworkCookie &cookie : cookiesFromString(text, separator.at(0)))
        found += cookie.name() + " is " + cookie.value();
    return QString::fromUtf8(found.join(", "));
}

QString checksPassedBy(const QUrl &url)
{
    QString passed;
    passed += isValid(url) ? u"valid "_qs : QString();
    passed += isValidHttpUrl(url) ? u"http "_qs : QString();
    passed += isValidHttpsUrl(url) ? u"https "_qs : QString();
    passed += isDownloadableByQt(url) && isDownloadableByWww(url) ? u"qt "_qs : QString();
    passed += isDownloadableByCurl(url) ? u"curl"_qs : QString();
    return passed;
}

bool isBelow(const QString &host, const QString &rootHost)
{
    const QString longPath(1 << 20, u'p');
    return isRootHostEqualTo(QUrl(u"https://u@"_qs + host + u":8080/"_qs + longPath), rootHost);
}

/// The values of a header block, each after its initial: name of the file, media type and its
/// codecs, length, or range ("*" if unknown). Missing ones are left out.
QString saidBy(const QByteArray &header)
{
    const HttpHeaderBlock headers("A: b\r\n" + header.toStdString() + "\r\n");
    const auto text = [](const std::optional<quint64> &value) {
        return value ? QString::number(*value) : u"*"_qs;
    };
    QString said;
    if (const QString name = headers.fileName(); !name.isEmpty())
        said += u"N "_qs + name;
    if (const auto type = headers.mediaType())
        said += QString::fromStdString("T " + type->name + ' ' + type->parameter("codecs"));
    if (const auto length = headers.contentLength())
        said += u"L "_qs + text(length);
    if (const auto range = headers.contentRange())
        said +=
            u"R "_qs + text(range->first) + u'-' + text(range->last) + u'/' + text(range->total);
    return said;
}

} // namespace

class TestDownloads : public QObject {
    Q_OBJECT
private Q_SLOTS:
    /// Must be first, as the others use some of the types.
    void registersMetatypesInOrder()
    {
        const QByteArray names =
            "AbstractDownloadPersistentInfo|BitFlagsUpdateMode|AbstractDownloadCommand"
            "|NetworkTrafficDirection|AbstractError|QVector<qint64>|QVector<quint64>"
            "|AbstractDownloadCreatedBy|AbstractDownloadPersistentInfoSortByPlusOrder|QtHostAndPort"
            "|QtConnectionsMap|AbstractNewDownloadsRequest|AbstractNewDownloadsRequestJob"
            "|AbstractDownloadFileOps::FileInitializeOperation"
            "|QVector<AbstractDownloadFileOps::FileInitializeOperation>|AbstractDownloadPriority"
            "|AbstractDownloadMergeOptions|AbstractDownloadMergeTaskOptions|CompareDownloadsResult"
            "|AbstractDownloadAbortReason|AbstractDownloadType|QVector<AbstractDownloadType>"
            "|AbstractDownloadFileExistsAction";
        qtRegisterAbstractDownloadsModuleMetatypes();
        int previous = 0;
        for (const QByteArray &name : names.split('|')) {
            const int id = QMetaType::fromName(name).id();
            QVERIFY2(id > previous, name);
            previous = id;
        }
    }

    void fileTypes_data() { ADD_VECTORS("downloads.json", "fileTypes"); }
    void fileTypes()
    {
        const VectorRow row;
        using Type = AbstractFileType;
        const QHash<QString, Type> types{{u"Video"_qs, Type::Video},
                                         {u"Music"_qs, Type::Music},
                                         {u"Document"_qs, Type::Document},
                                         {u"Image"_qs, Type::Image},
                                         {u"Unknown"_qs, Type::Unknown}};
        for (const QString &name : row.text(0).split(u'|'))
            QCOMPARE(AbstractFileTypeDetector().typeFromFileName(name), types[row.text(1)]);
    }

    void cookies_data() { ADD_VECTORS("downloads.json", "cookies"); }
    void cookies()
    {
        const VectorRow row;
        QCOMPARE(cookiesIn(row.text(0), row.text(1)), row.text(2));
    }

    void schemes_data() { ADD_VECTORS("downloads.json", "schemes"); }
    void schemes()
    {
        const VectorRow row;
        for (const QString &url : row.text(0).split(u'|'))
            QCOMPARE(checksPassedBy(QUrl(url)), row.text(1));
    }

    void queries_data() { ADD_VECTORS("downloads.json", "queries"); }
    void queries()
    {
        const VectorRow row;
        QCOMPARE(appended(row.text(0), row.text(1), row.text(2)), row.text(3));
    }

    void rootHosts_data() { ADD_VECTORS("downloads.json", "rootHosts"); }
    void rootHosts()
    {
        const VectorRow row;
        QCOMPARE(isBelow(row.text(0), row.text(1)), row.at(2).toBool());
    }

    void headerFields_data() { ADD_VECTORS("downloads.json", "headerFields"); }
    void headerFields()
    {
        const VectorRow row;
        const HttpHeaderBlock headers(row.bytes(0).toStdString());
        const std::string name = row.bytes(1).toStdString();
        QCOMPARE(headers.value(name), row.bytes(2).toStdString());
        QCOMPARE(static_cast<int>(headers.values(name).size()), row.at(3).toInt());
        QCOMPARE(headers.contains(name), row.at(3).toInt() > 0);
    }

    void headerValues_data() { ADD_VECTORS("downloads.json", "headerValues"); }
    void headerValues()
    {
        const VectorRow row;
        QCOMPARE(saidBy(row.bytes(0)), row.text(1));
    }

    void cookiesBecomeText()
    {
        QNetworkCookie withMore("\xc4\x9b", "\uFEFF3");
        withMore.setPath(u"/p"_qs);
        withMore.setSecure(true);
        const QNetworkCookie one("a", "1");
        QCOMPARE(cookiesToString({withMore, one, one, QNetworkCookie("", "")}, u';'),
                 u"ě=\uFEFF3;a=1;a=1;="_qs);
    }
};

QTEST_GUILESS_MAIN(TestDownloads)
#include "tst_downloads.moc"
