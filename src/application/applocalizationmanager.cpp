#include "applocalizationmanager.h"

#include "qtappdefaultlogger.h"

#include <QCoreApplication>
#include <QDir>
#include <QThread>
#include <QTranslator>

#include <algorithm>
#include <utility>

namespace {

const QLatin1String appFilePrefix("kov");
const QLatin1String appFileSuffix(".qm");

/// The locale in the file name "kov_<locale>.qm".
QString localeOfAppFile(const QString &fileName)
{
    const auto begin = appFilePrefix.size() + 1;
    return fileName.sliced(begin, fileName.size() - begin - appFileSuffix.size());
}

} // namespace

AppLocalizationManager::AppLocalizationManager(QString translationsPath, QObject *parent)
    : QObject(parent), m_translationsPath(std::move(translationsPath))
{
}

AppLocalizationManager::~AppLocalizationManager() { unload(); }

QString AppLocalizationManager::appTranslationsPath()
{
    return QCoreApplication::applicationDirPath() + QStringLiteral("/translations");
}

QStringList AppLocalizationManager::installedTranslations() const
{
    if (!m_installedTranslations.isEmpty())
        return m_installedTranslations;

    // English language name and locale name.
    std::vector<std::pair<QString, QString>> found;
    const QStringList files =
        QDir(m_translationsPath + QStringLiteral("/main"))
            .entryList({appFilePrefix + QStringLiteral("_*") + appFileSuffix}, QDir::Files);
    for (const QString &file : files) {
        const QString name = localeOfAppFile(file);
        // Chinese is offered through its regional files only: the scripts differ.
        if (name.isEmpty() || name.compare(u"zh", Qt::CaseInsensitive) == 0)
            continue;
        const QString localeName = QLocale(name).name();
        found.emplace_back(QLocale::languageToString(QLocale(localeName).language()), localeName);
    }
    std::stable_sort(found.begin(), found.end(),
                     [](const auto &a, const auto &b) { return a.first < b.first; });

    m_installedTranslations.reserve(static_cast<qsizetype>(found.size()) + 1);
    m_installedTranslations.append(QLocale(QStringLiteral("en")).name());
    for (const auto &[language, localeName] : found)
        m_installedTranslations.append(localeName);
    return m_installedTranslations;
}

QString AppLocalizationManager::findInstalledTranslation(const QLocale &locale) const
{
    const QStringList installed = installedTranslations();
    const QString wanted = locale.name();
    for (const QString &name : installed) {
        if (name == wanted || QLocale(name) == locale)
            return name;
    }
    for (const QString &name : installed) {
        if (QLocale(name).language() == locale.language())
            return name;
    }
    return {};
}

bool AppLocalizationManager::isTranslationInstalled(const QLocale &locale) const
{
    return !findInstalledTranslation(locale).isEmpty();
}

void AppLocalizationManager::load(const QLocale &locale)
{
    if (QThread::currentThread() != thread()) {
        QMetaObject::invokeMethod(
            this, [this, locale] { load(locale); }, Qt::QueuedConnection);
        return;
    }
    logLine(1,
            QStringLiteral("[AppLocalizationManager]: loading locale: %1...").arg(locale.name()));
    QLocale chosen = locale;
    if (const QString name = findInstalledTranslation(locale); !name.isEmpty()) {
        logLine(1,
                QStringLiteral("[AppLocalizationManager]: found translation name: %1").arg(name));
        chosen = QLocale(name);
    }
    unload();
    if (chosen.language() != QLocale::English)
        loadTranslators(chosen);
    m_currentLocale = chosen;
    Q_EMIT translationsLoaded();
}

void AppLocalizationManager::unload()
{
    for (const auto &translator : m_translators)
        QCoreApplication::removeTranslator(translator.get());
    m_translators.clear();
}

Qt::LayoutDirection AppLocalizationManager::layoutDirection()
{
    // Text and comment are those of Qt's own translations.
    const QString direction = QCoreApplication::translate(
        "QGuiApplication", "QT_LAYOUT_DIRECTION",
        "Translate this string to the string 'LTR' in left-to-right languages or to 'RTL' in "
        "right-to-left languages (such as Hebrew and Arabic) to get proper UI layout.");
    return direction == u"RTL" ? Qt::RightToLeft : Qt::LeftToRight;
}

void AppLocalizationManager::loadTranslators(const QLocale &locale)
{
    for (const QString &prefix : {QStringLiteral("qt"), QStringLiteral("qtbase")}) {
        if (loadTranslator(locale, prefix, m_translationsPath))
            logLine(
                1,
                QStringLiteral("[AppLocalizationManager]: loaded %1 translation file").arg(prefix));
    }
    for (const QString &folder : {QStringLiteral("main"), QStringLiteral("torrents")}) {
        if (loadTranslator(locale, appFilePrefix, m_translationsPath + u'/' + folder))
            logLine(1,
                    QStringLiteral("[AppLocalizationManager]: loaded app (%1) translation file")
                        .arg(folder));
    }
    for (const auto &translator : m_translators)
        QCoreApplication::installTranslator(translator.get());
}

bool AppLocalizationManager::loadTranslator(const QLocale &locale, const QString &prefix,
                                            const QString &directory)
{
    auto translator = std::make_unique<QTranslator>();
    if (!translator->load(locale, prefix, QStringLiteral("_"), directory))
        return false;
    m_translators.push_back(std::move(translator));
    return true;
}
