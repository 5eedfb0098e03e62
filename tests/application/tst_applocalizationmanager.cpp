#include "applocalizationmanager.h"
#include "logcapture.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QSet>
#include <QSignalSpy>
#include <QTest>

#include <memory>
#include <thread>

class TestAppLocalizationManager : public QObject {
    Q_OBJECT
    std::unique_ptr<QTemporaryDir> m_dir;

    void addFile(const QString &name)
    {
        QVERIFY(QFile(m_dir->filePath(name)).open(QIODevice::WriteOnly));
    }

    static QString shown()
    {
        return QCoreApplication::translate("QObject", "Download with %1").section(u' ', 0, 0);
    }

private Q_SLOTS:
    void init()
    {
        m_dir = std::make_unique<QTemporaryDir>();
        for (const QString &folder : {u"main"_qs, u"torrents"_qs})
            QVERIFY(QDir(m_dir->path()).mkdir(folder));
    }

    void installedTranslations()
    {
        QCOMPARE(AppLocalizationManager(m_dir->path()).installedTranslations(),
                 QStringList(u"en_US"_qs));
        for (const char *file :
             {"kov_sv.qm", "kov_pt_PT.qm", "kov_pt_BR.qm", "kov_de.qm", "kov_zh.qm", "kov_ZH.qm",
              "kov_zh_CN.qm", "kov_zh_TW.qm", "kov_nb.qm", "kov_en_GB.qm", "kov_.qm", "kov_fr.ts",
              "kovfr.qm", "qtbase_fr.qm"})
            addFile(u"main/"_qs + QLatin1String(file));
        const AppLocalizationManager manager(m_dir->path());
        // By the English name of the language; Chinese by region only.
        QCOMPARE(manager.installedTranslations().join(u' '),
                 u"en_US zh_CN zh_TW en_GB de_DE nb_NO pt_BR pt_PT sv_SE"_qs);
        const std::pair<const char *, const char *> cases[] = {
            {"pt", "pt_BR"},    {"pt_AO", "pt_PT"}, {"de_AT", "de_DE"}, {"en_AU", "en_US"},
            {"en_US", "en_US"}, {"fr_FR", ""},      {"C", ""},          {"zh_SG", "zh_CN"},
            {"zh_HK", "zh_TW"}, {"zh_MO", "zh_TW"}, {"nn_NO", "nb_NO"}, {"zh_Hant_US", "zh_TW"},
            {"no", "nb_NO"}};
        for (const auto &[locale, name] : cases)
            QCOMPARE(manager.findInstalledTranslation(QLocale(QLatin1String(locale))),
                     QLatin1String(name));
    }

    void loadSwitchesTranslators()
    {
        const LogCapture log;
        auto manager =
            std::make_unique<AppLocalizationManager>(QStringLiteral(KOVALO_TRANSLATIONS_DIR));
        const QSignalSpy loaded(manager.get(), &AppLocalizationManager::translationsLoaded);
        manager->load(QLocale(u"de_AT"_qs));
        QCOMPARE(shown(), u"Mit");
        QCOMPARE(manager->currentLocale(), QLocale(u"de_DE"_qs));
        QCOMPARE(log.texts(),
                 QString(u"@loading locale: de_AT...\n@found translation name: de_DE\n"
                         "@loaded qtbase translation file\n@loaded app (main) translation file"_qs)
                     .replace(u'@', u"[AppLocalizationManager]: "_qs)
                     .split(u'\n'));
        manager->load(QLocale(u"en_GB"_qs));
        QCOMPARE(shown(), u"Download");
        std::thread([&manager] { manager->load(QLocale(u"fr"_qs)); }).join();
        QCOMPARE(shown(), u"Download");
        QTRY_COMPARE(loaded.size(), 3);
        QCOMPARE(shown(), u"Télécharger");
        manager.reset();
        QCOMPARE(shown(), u"Download");
    }

    /// The texts that the host shows, loaded the way the host loads them.
    void shippedTranslations()
    {
        const QString path = QStringLiteral(KOVALO_TRANSLATIONS_DIR);
        const QStringList locales = AppLocalizationManager(path).installedTranslations();
        const QStringList files = QDir(path + u"/main"_qs).entryList({u"*.qm"_qs});
        QVERIFY(files.contains(u"kov_ar.qm"_qs));
        QCOMPARE(locales.size(), files.size() + 1); // with English
        AppLocalizationManager manager(path);
        QSet<QString> different;
        for (const QString &locale : locales) {
            manager.load(QLocale(locale));
            for (const char *source : {"Download with %1", "Download all with %1",
                                       "Download selected with %1", "Download video with %1"}) {
                const QString text = QCoreApplication::translate("QObject", source);
                QVERIFY2(text.count(u'%') == 1 && text.count(u"%1") == 1, qPrintable(text));
                QVERIFY2(text == text.simplified() && !text.contains(u'<'), qPrintable(text));
                QVERIFY2(!different.contains(text), qPrintable(text));
                different.insert(text);
            }
            const QString failure =
                QCoreApplication::translate("VhIpcIncomingDownloadsClient", "Connection failure");
            QCOMPARE(failure == u"Connection failure", locale == u"en_US");
            QCOMPARE(AppLocalizationManager::layoutDirection(), QLocale(locale).textDirection());
        }
    }
};

QTEST_GUILESS_MAIN(TestAppLocalizationManager)
#include "tst_applocalizationmanager.moc"
