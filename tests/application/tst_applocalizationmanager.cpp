#include "applocalizationmanager.h"
#include "logcapture.h"

#include <QCoreApplication>
#include <QDir>
#include <QProcess>
#include <QSignalSpy>
#include <QTest>
#include <QTranslator>

#include <memory>
#include <thread>

namespace {

/// The translation of a text that the files made here know.
QString shown(const char *text) { return QCoreApplication::translate("Test", text); }

} // namespace

class TestAppLocalizationManager : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init();
    void installedTranslations_data();
    void installedTranslations();
    void folderIsReadOnce();
    void findInstalledTranslation_data();
    void findInstalledTranslation();
    void loadSwitchesTranslators();
    void regionOfTheSameLanguage();
    void withoutUsableTranslation_data();
    void withoutUsableTranslation();
    void loadFromAnotherThread();
    void layoutDirection();
    void pathBesideTheExecutable();

private:
    void addFile(const QString &name, const QByteArray &contents = "x");
    /// Compiles a translation of the source texts (in the context "Test") into the folder.
    void compile(const QString &name, const QHash<QString, QString> &texts);

    std::unique_ptr<QTemporaryDir> m_dir;
};

void TestAppLocalizationManager::init()
{
    m_dir = std::make_unique<QTemporaryDir>();
    QVERIFY(QDir(m_dir->path()).mkdir(QStringLiteral("main")));
    QVERIFY(QDir(m_dir->path()).mkdir(QStringLiteral("torrents")));
}

void TestAppLocalizationManager::addFile(const QString &name, const QByteArray &contents)
{
    QFile file(m_dir->filePath(name));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(contents), contents.size());
}

void TestAppLocalizationManager::compile(const QString &name, const QHash<QString, QString> &texts)
{
    QString source = QStringLiteral("<!DOCTYPE TS><TS version=\"2.1\"><context><name>Test</name>");
    for (auto it = texts.cbegin(); it != texts.cend(); ++it)
        source += QStringLiteral("<message><source>%1</source><translation>%2</translation>"
                                 "</message>")
                      .arg(it.key(), it.value());
    source += QStringLiteral("</context></TS>");
    addFile(QStringLiteral("source.ts"), source.toUtf8());
    QCOMPARE(
        QProcess::execute(QStringLiteral(KOVALO_LRELEASE),
                          {QStringLiteral("-silent"), m_dir->filePath(QStringLiteral("source.ts")),
                           QStringLiteral("-qm"), m_dir->filePath(name)}),
        0);
}

void TestAppLocalizationManager::installedTranslations_data()
{
    QTest::addColumn<QStringList>("files");
    QTest::addColumn<QStringList>("names");
    const QString english = QStringLiteral("en_US");
    QTest::newRow("none") << QStringList() << QStringList{english};
    QTest::newRow("sorted by English language name")
        << QStringList{QStringLiteral("kov_sv.qm"), QStringLiteral("kov_de.qm"),
                       QStringLiteral("kov_el.qm"), QStringLiteral("kov_cs.qm")}
        << QStringList{english, QStringLiteral("cs_CZ"), QStringLiteral("de_DE"),
                       QStringLiteral("el_GR"), QStringLiteral("sv_SE")};
    QTest::newRow("regions of one language")
        << QStringList{QStringLiteral("kov_pt_PT.qm"), QStringLiteral("kov_pt_BR.qm")}
        << QStringList{english, QStringLiteral("pt_BR"), QStringLiteral("pt_PT")};
    QTest::newRow("Chinese by region only")
        << QStringList{QStringLiteral("kov_zh.qm"), QStringLiteral("kov_ZH.qm"),
                       QStringLiteral("kov_zh_CN.qm")}
        << QStringList{english, QStringLiteral("zh_CN")};
    QTest::newRow("other files") << QStringList{QStringLiteral("kov_.qm"),
                                                QStringLiteral("kov_de.ts"),
                                                QStringLiteral("qtbase_de.qm"),
                                                QStringLiteral("kovde.qm")}
                                 << QStringList{english};
    QTest::newRow("English file") << QStringList{QStringLiteral("kov_en_GB.qm")}
                                  << QStringList{english, QStringLiteral("en_GB")};
}

void TestAppLocalizationManager::installedTranslations()
{
    QFETCH(const QStringList, files);
    for (const QString &file : files)
        addFile(QStringLiteral("main/") + file);
    QTEST(AppLocalizationManager(m_dir->path()).installedTranslations(), "names");
}

void TestAppLocalizationManager::folderIsReadOnce()
{
    const AppLocalizationManager manager(m_dir->path());
    QCOMPARE(manager.installedTranslations().size(), 1);
    addFile(QStringLiteral("main/kov_de.qm"));
    QCOMPARE(manager.installedTranslations().size(), 1);
}

void TestAppLocalizationManager::findInstalledTranslation_data()
{
    QTest::addColumn<QString>("locale");
    QTest::addColumn<QString>("name");
    const auto row = [](const char *locale, const char *name) {
        QTest::newRow(locale) << QString::fromLatin1(locale) << QString::fromLatin1(name);
    };
    row("pt_PT", "pt_PT");
    row("pt_BR", "pt_BR");
    row("pt_AO", "pt_BR");
    row("de_DE", "de_DE");
    row("de_AT", "de_DE");
    row("zh_TW", "zh_CN");
    row("en_US", "en_US");
    row("en_GB", "en_US");
    row("fr_FR", "");
    row("C", "");
}

void TestAppLocalizationManager::findInstalledTranslation()
{
    QFETCH(const QString, locale);
    QFETCH(const QString, name);
    for (const auto *file : {"pt_PT", "pt_BR", "de", "zh_CN"})
        addFile(QStringLiteral("main/kov_%1.qm").arg(QLatin1String(file)));
    const AppLocalizationManager manager(m_dir->path());
    QCOMPARE(manager.findInstalledTranslation(QLocale(locale)), name);
    QCOMPARE(manager.isTranslationInstalled(QLocale(locale)), !name.isEmpty());
}

void TestAppLocalizationManager::loadSwitchesTranslators()
{
    compile(QStringLiteral("qtbase_de.qm"),
            {{QStringLiteral("qt"), QStringLiteral("de: qt")},
             {QStringLiteral("main"), QStringLiteral("overridden")}});
    compile(QStringLiteral("main/kov_de.qm"),
            {{QStringLiteral("main"), QStringLiteral("de: main")}});
    compile(QStringLiteral("torrents/kov_de.qm"),
            {{QStringLiteral("torrents"), QStringLiteral("de: torrents")}});
    compile(QStringLiteral("main/kov_cs.qm"),
            {{QStringLiteral("main"), QStringLiteral("cs: main")}});

    const LogCapture log;
    auto manager = std::make_unique<AppLocalizationManager>(m_dir->path());
    const QSignalSpy loaded(manager.get(), &AppLocalizationManager::translationsLoaded);
    QCOMPARE(manager->currentLocale(), QLocale());

    manager->load(QLocale(QStringLiteral("de_AT")));
    QCOMPARE(shown("qt"), u"de: qt");
    QCOMPARE(shown("main"), u"de: main");
    QCOMPARE(shown("torrents"), u"de: torrents");
    QCOMPARE(manager->currentLocale(), QLocale(QStringLiteral("de_DE")));
    const QString mark = QStringLiteral("[AppLocalizationManager]: ");
    QCOMPARE(log.texts(),
             (QStringList{mark + QStringLiteral("loading locale: de_AT..."),
                          mark + QStringLiteral("found translation name: de_DE"),
                          mark + QStringLiteral("loaded qtbase translation file"),
                          mark + QStringLiteral("loaded app (main) translation file"),
                          mark + QStringLiteral("loaded app (torrents) translation file")}));

    manager->load(QLocale(QStringLiteral("cs")));
    QCOMPARE(shown("main"), u"cs: main");
    QCOMPARE(shown("qt"), u"qt");
    QCOMPARE(shown("torrents"), u"torrents");

    manager->load(QLocale(QStringLiteral("en_GB")));
    QCOMPARE(shown("main"), u"main");
    QCOMPARE(manager->currentLocale(), QLocale(QStringLiteral("en_US")));

    manager->load(QLocale(QStringLiteral("de")));
    QCOMPARE(loaded.size(), 4);
    manager.reset();
    QCOMPARE(shown("main"), u"main");
}

void TestAppLocalizationManager::regionOfTheSameLanguage()
{
    compile(QStringLiteral("main/kov_zh_CN.qm"),
            {{QStringLiteral("main"), QStringLiteral("中文")}});
    AppLocalizationManager manager(m_dir->path());
    manager.load(QLocale(QStringLiteral("zh_HK")));
    QCOMPARE(shown("main"), u"中文");
    QCOMPARE(manager.currentLocale().name(), u"zh_CN");
}

void TestAppLocalizationManager::withoutUsableTranslation_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::newRow("no file") << QByteArray();
    QTest::newRow("empty file") << QByteArray("");
    QTest::newRow("not a translation") << QByteArray("<TS/>");
}

void TestAppLocalizationManager::withoutUsableTranslation()
{
    QFETCH(const QByteArray, file);
    if (!file.isNull())
        addFile(QStringLiteral("main/kov_fr.qm"), file);
    AppLocalizationManager manager(m_dir->path());
    const QSignalSpy loaded(&manager, &AppLocalizationManager::translationsLoaded);
    manager.load(QLocale(QStringLiteral("fr_FR")));
    QCOMPARE(shown("main"), u"main");
    QCOMPARE(manager.currentLocale().name(), u"fr_FR");
    QCOMPARE(loaded.size(), 1);
}

void TestAppLocalizationManager::loadFromAnotherThread()
{
    compile(QStringLiteral("main/kov_de.qm"),
            {{QStringLiteral("main"), QStringLiteral("de: main")}});
    AppLocalizationManager manager(m_dir->path());
    QThread *loadedOn = nullptr;
    connect(
        &manager, &AppLocalizationManager::translationsLoaded, this,
        [&] { loadedOn = QThread::currentThread(); }, Qt::DirectConnection);
    std::thread([&manager] { manager.load(QLocale(QStringLiteral("de"))); }).join();
    QCOMPARE(shown("main"), u"main");
    QTRY_COMPARE(loadedOn, manager.thread());
    QCOMPARE(shown("main"), u"de: main");
}

void TestAppLocalizationManager::layoutDirection()
{
    QCOMPARE(AppLocalizationManager::layoutDirection(), Qt::LeftToRight);

    class Direction : public QTranslator {
    public:
        QString translate(const char *context, const char *source, const char *comment,
                          int) const override
        {
            const bool asked = qstrcmp(context, "QGuiApplication") == 0
                && qstrcmp(source, "QT_LAYOUT_DIRECTION") == 0
                && QByteArray(comment).startsWith("Translate this string to the string 'LTR'");
            return asked ? text : QString();
        }
        bool isEmpty() const override { return false; }
        QString text;
    };
    Direction translator;
    QVERIFY(QCoreApplication::installTranslator(&translator));
    for (const auto &[text, direction] : {std::pair(QStringLiteral("RTL"), Qt::RightToLeft),
                                          std::pair(QStringLiteral("rtl"), Qt::LeftToRight),
                                          std::pair(QStringLiteral("LTR"), Qt::LeftToRight)}) {
        translator.text = text;
        QCOMPARE(AppLocalizationManager::layoutDirection(), direction);
    }
}

void TestAppLocalizationManager::pathBesideTheExecutable()
{
    QCOMPARE(AppLocalizationManager::appTranslationsPath(),
             QCoreApplication::applicationDirPath() + QStringLiteral("/translations"));
}

QTEST_GUILESS_MAIN(TestAppLocalizationManager)
#include "tst_applocalizationmanager.moc"
