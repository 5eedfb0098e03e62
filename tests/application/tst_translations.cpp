#include "applocalizationmanager.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QSet>
#include <QTest>

/// The translations as they are shipped, loaded the way the host loads them.
class TestTranslations : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void everyFileIsExpected();
    void texts_data();
    void texts();

private:
    const QString m_path = QStringLiteral(KOVALO_TRANSLATIONS_DIR);
};

void TestTranslations::everyFileIsExpected()
{
    QCOMPARE(AppLocalizationManager(m_path).installedTranslations(),
             QStringLiteral("en_US ar_EG zh_CN zh_TW cs_CZ da_DK nl_NL fi_FI fr_FR de_DE el_GR "
                            "he_IL hu_HU id_ID it_IT ja_JP ko_KR nb_NO pl_PL pt_BR pt_PT ro_RO "
                            "ru_RU es_ES sv_SE th_TH tr_TR uk_UA vi_VN")
                 .split(u' '));
}

void TestTranslations::texts_data()
{
    QTest::addColumn<QString>("locale");
    QTest::addColumn<int>("script");
    QTest::addColumn<QString>("caption");
    const auto row = [](const char *locale, QChar::Script script, const char *caption) {
        QTest::newRow(locale) << QString::fromUtf8(locale) << int{script}
                              << QString::fromUtf8(caption);
    };
    row("ar", QChar::Script_Arabic, "تنزيل باستخدام KOV");
    row("cs", QChar::Script_Latin, "Stáhnout pomocí aplikace KOV");
    row("da", QChar::Script_Latin, "Hent med KOV");
    row("de", QChar::Script_Latin, "Mit KOV herunterladen");
    row("el", QChar::Script_Greek, "Λήψη με το KOV");
    row("es", QChar::Script_Latin, "Descargar con KOV");
    row("fi", QChar::Script_Latin, "Lataa KOV-ohjelmalla");
    row("fr", QChar::Script_Latin, "Télécharger avec KOV");
    row("he", QChar::Script_Hebrew, "הורדה באמצעות KOV");
    row("hu", QChar::Script_Latin, "Letöltés ezzel: KOV");
    row("id", QChar::Script_Latin, "Unduh dengan KOV");
    row("it", QChar::Script_Latin, "Scarica con KOV");
    row("ja", QChar::Script_Katakana, "KOV でダウンロード");
    row("ko", QChar::Script_Hangul, "KOV 앱으로 다운로드");
    row("nb", QChar::Script_Latin, "Last ned med KOV");
    row("nl", QChar::Script_Latin, "Downloaden met KOV");
    row("pl", QChar::Script_Latin, "Pobierz za pomocą programu KOV");
    row("pt_BR", QChar::Script_Latin, "Baixar com o KOV");
    row("pt_PT", QChar::Script_Latin, "Transferir com o KOV");
    row("ro", QChar::Script_Latin, "Descarcă cu KOV");
    row("ru", QChar::Script_Cyrillic, "Скачать с помощью KOV");
    row("sv", QChar::Script_Latin, "Ladda ner med KOV");
    row("th", QChar::Script_Thai, "ดาวน์โหลดด้วย KOV");
    row("tr", QChar::Script_Latin, "KOV ile indir");
    row("uk", QChar::Script_Cyrillic, "Завантажити за допомогою KOV");
    row("vi", QChar::Script_Latin, "Tải xuống bằng KOV");
    row("zh_CN", QChar::Script_Han, "使用 KOV 下载");
    row("zh_TW", QChar::Script_Han, "使用 KOV 下載");
}

void TestTranslations::texts()
{
    QFETCH(const QString, locale);
    QFETCH(const int, script);
    QFETCH(const QString, caption);
    AppLocalizationManager manager(m_path);
    manager.load(QLocale(locale));

    const auto hasScript = [script](const QString &text) {
        return std::any_of(text.begin(), text.end(),
                           [script](QChar c) { return c.script() == script; });
    };
    QSet<QString> different;
    for (const char *source : {"Download with %1", "Download all with %1",
                               "Download selected with %1", "Download video with %1"}) {
        const QString text = QCoreApplication::translate("QObject", source);
        QVERIFY2(text != QLatin1String(source), source);
        QVERIFY2(text.count(u'%') == 1 && text.count(u"%1") == 1, source);
        // KOV itself is Latin; the words around it must be of the language's script.
        QVERIFY2(hasScript(QString(text).remove(QStringLiteral("%1"))), source);
        QVERIFY2(text == text.simplified() && !text.contains(u'<'), source);
        different.insert(text);
    }
    QCOMPARE(different.size(), 4);
    QCOMPARE(QCoreApplication::translate("QObject", "Download with %1").arg(u"KOV"), caption);

    const QString failure =
        QCoreApplication::translate("VhIpcIncomingDownloadsClient", "Connection failure");
    QVERIFY(failure != u"Connection failure" && !failure.contains(u'%'));
    QVERIFY(failure == failure.simplified() && failure.size() > 3);
    QVERIFY(script == QChar::Script_Katakana || hasScript(failure));

    const bool rightToLeft = locale == u"ar" || locale == u"he";
    QCOMPARE(AppLocalizationManager::layoutDirection(),
             rightToLeft ? Qt::RightToLeft : Qt::LeftToRight);
}

QTEST_GUILESS_MAIN(TestTranslations)
#include "tst_translations.moc"
