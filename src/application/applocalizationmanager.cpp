#include "applocalizationmanager.h"

#include "qtappdefaultlogger.h"

#include <QCoreApplication>
#include <QFile>
#include <QThread>
#include <QTranslator>

#include <dirent.h>

#include <algorithm>
#include <tuple>
#include <utility>

namespace {

/// The locales of the files "kov_<locale>.qm". Read at the start for every language but English:
/// QDir would look at each file, and compile a regular expression for a filter.
std::vector<QString> localesOfAppFiles(const QString &folder)
{
    std::vector<QString> locales;
    DIR *const opened = ::opendir(QFile::encodeName(folder).constData());
    if (!opened)
        return locales;
    const QByteArrayView prefix("kov_");
    const QByteArrayView suffix(".qm");
    while (const dirent *const entry = ::readdir(opened)) {
        const QByteArrayView name(entry->d_name);
        if (entry->d_type != DT_DIR && name.startsWith(prefix) && name.endsWith(suffix))
            locales.push_back(QString::fromUtf8(name.sliced(prefix.size()).chopped(suffix.size())));
    }
    ::closedir(opened);
    return locales;
}

/// The language of the translations to use for a locale: Bokmål for Nynorsk. (A translation into
/// Nynorsk would have been found already, as an exact match.)
QLocale::Language languageFor(const QLocale &locale)
{
    return locale.language() == QLocale::NorwegianNynorsk ? QLocale::NorwegianBokmal
                                                          : locale.language();
}

/// How well a translation into the same language fits a locale; higher is better.
int closeness(const QLocale &translation, const QLocale &locale)
{
    if (translation.script() != locale.script())
        return 0;
    // Outside Brazil, Portuguese locales inherit from that of Portugal (CLDR, parentLocales).
    const bool isEuropean = locale.language() == QLocale::Portuguese
        && locale.territory() != QLocale::Brazil && translation.territory() == QLocale::Portugal;
    return isEuropean ? 2 : 1;
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
    const std::vector<Translation> &translations = installed();
    QStringList names;
    names.reserve(static_cast<qsizetype>(translations.size()));
    for (const Translation &translation : translations)
        names.append(translation.name);
    return names;
}

QString AppLocalizationManager::findInstalledTranslation(const QLocale &locale) const
{
    // Most often asked for, and always there: the folder need not be read.
    if (locale == QLocale(QLocale::English))
        return locale.name();

    const std::vector<Translation> &translations = installed();
    const QString wanted = locale.name();
    for (const Translation &translation : translations) {
        if (translation.name == wanted)
            return translation.name;
    }
    const Translation *best = nullptr;
    for (const Translation &translation : translations) {
        if (translation.locale.language() == languageFor(locale)
            && (!best || closeness(translation.locale, locale) > closeness(best->locale, locale)))
            best = &translation;
    }
    return best ? best->name : QString();
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
    // The same text as in Qt's own translations, which are the fallback.
    const QString direction = QCoreApplication::translate(
        "QGuiApplication", "QT_LAYOUT_DIRECTION",
        "Translate this string to the string 'LTR' in left-to-right languages or to 'RTL' in "
        "right-to-left languages (such as Hebrew and Arabic) to get proper UI layout.");
    return direction == u"RTL" ? Qt::RightToLeft : Qt::LeftToRight;
}

void AppLocalizationManager::loadTranslators(const QLocale &locale)
{
    for (const QString &prefix : {QStringLiteral("qt"), QStringLiteral("qtbase")}) {
        if (!m_qtTextsAreEnglish && loadTranslator(locale, prefix, m_translationsPath))
            logLine(
                1,
                QStringLiteral("[AppLocalizationManager]: loaded %1 translation file").arg(prefix));
    }
    for (const QString &folder : {QStringLiteral("main"), QStringLiteral("torrents")}) {
        if (loadTranslator(locale, QStringLiteral("kov"), m_translationsPath + u'/' + folder))
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

AppLocalizationManager::Translation AppLocalizationManager::translationFor(const QLocale &locale)
{
    return {locale.name(), QLocale::languageToString(locale.language()), locale};
}

const std::vector<AppLocalizationManager::Translation> &AppLocalizationManager::installed() const
{
    if (!m_installed.empty())
        return m_installed;

    const std::vector<QString> names =
        localesOfAppFiles(m_translationsPath + QStringLiteral("/main"));
    m_installed.reserve(names.size() + 1);
    for (const QString &name : names) {
        // Chinese is offered through its regional files only: the scripts differ.
        if (name.isEmpty() || name.compare(u"zh", Qt::CaseInsensitive) == 0)
            continue;
        m_installed.push_back(translationFor(QLocale(name)));
    }
    std::sort(m_installed.begin(), m_installed.end(),
              [](const Translation &a, const Translation &b) {
                  return std::tie(a.language, a.name) < std::tie(b.language, b.name);
              });
    m_installed.insert(m_installed.begin(), translationFor(QLocale(QLocale::English)));
    return m_installed;
}
