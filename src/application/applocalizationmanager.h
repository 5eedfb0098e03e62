#pragma once

#include <QLocale>
#include <QObject>
#include <QString>
#include <QStringList>

#include <memory>
#include <vector>

class QTranslator;

/**
 * Switches the language of the texts that the program shows.
 *
 * Application translations are files "kov_<locale>.qm" in the subfolders "main" and "torrents" of
 * the translations folder; Qt's own ("qt_…", "qtbase_…") are in that folder itself. The source
 * texts are English, so English is always available and needs no file. Belongs to the main thread
 * except for load(). Destroying it unloads its translators.
 */
class AppLocalizationManager : public QObject {
    Q_OBJECT
public:
    explicit AppLocalizationManager(QString translationsPath = appTranslationsPath(),
                                    QObject *parent = nullptr);
    ~AppLocalizationManager() override;

    /// "translations" beside the executable.
    static QString appTranslationsPath();

    /// The locales to choose from, such as "de_DE": English first, the others by the English names
    /// of their languages. The folder is read once.
    QStringList installedTranslations() const;
    /// The installed one that fits best: the same locale, else the same language, in the same
    /// script where there is a choice; else empty.
    QString findInstalledTranslation(const QLocale &locale) const;
    bool isTranslationInstalled(const QLocale &locale) const;

    /// Leaves Qt's own texts in English. For programs that log them, or show them beside English.
    void keepQtTextsEnglish() { m_qtTextsAreEnglish = true; }

    /// Replaces the translators by those that fit the locale best. Called on another thread, it
    /// takes effect on the manager's thread, from its event loop.
    void load(const QLocale &locale);
    void unload();
    /// The installed locale chosen by the last load(); before that, the default locale.
    QLocale currentLocale() const { return m_currentLocale; }

    /// The direction in which the current language is written.
    static Qt::LayoutDirection layoutDirection();

Q_SIGNALS:
    void translationsLoaded();

private:
    struct Translation {
        QString name;
        /// In English.
        QString language;
        QLocale locale;
    };

    static Translation translationFor(const QLocale &locale);
    const std::vector<Translation> &installed() const;
    void loadTranslators(const QLocale &locale);
    /// Keeps the translator if there is such a file; returns whether there is.
    bool loadTranslator(const QLocale &locale, const QString &prefix, const QString &directory);

    const QString m_translationsPath;
    QLocale m_currentLocale;
    bool m_qtTextsAreEnglish = false;
    std::vector<std::unique_ptr<QTranslator>> m_translators;
    /// Filled on first use.
    mutable std::vector<Translation> m_installed;
};
