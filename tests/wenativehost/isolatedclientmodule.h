#pragma once

#include "appclientmodule.h"
#include "appclientsettingsinitializer.h"
#include "appservername.h"
#include "qtappabstractsettingsmanager.h"
#include "qtappconfigbase.h"

#include <QLocalServer>
#include <QSharedPointer>
#include <QTemporaryDir>

/// A client module whose data and whose application's socket lie in a temporary folder, so that it
/// meets no application but the one that the test stands in for.
class IsolatedClientModule {
public:
    IsolatedClientModule()
    {
        qputenv("TMPDIR", QFile::encodeName(m_dir.path()));
        m_module = QSharedPointer<AppClientModule>::create(
            QSharedPointer<Config>::create(QDir(m_dir.path())), nullptr);
    }
    ~IsolatedClientModule()
    {
        m_module->initialize(false);
        qputenv("TMPDIR", m_formerTmpDir);
    }
    Q_DISABLE_COPY_MOVE(IsolatedClientModule)

    void bringUp() { m_module->initialize(true); }
    const QSharedPointer<AppClientModule> &module() const { return m_module; }
    /// The application accepts connections and says nothing.
    bool listen() { return m_server.listen(appServerName()); }
    /// The application's settings, empty until something is written, count as known.
    void initializeSettings()
    {
        m_module->settingsInitializer()->onVhIpcSettingsReadyStateChanged(true);
    }
    QtAppAbstractSettingsManager &settings() { return *m_module->settingsManager(); }

private:
    class Config : public QtAppConfigBase {
    public:
        explicit Config(const QDir &dir) : m_dir(dir) { }
        QDir dataDir() const override { return m_dir; }

    private:
        const QDir m_dir;
    };

    const QByteArray m_formerTmpDir = qgetenv("TMPDIR");
    const QTemporaryDir m_dir;
    QLocalServer m_server;
    QSharedPointer<AppClientModule> m_module;
};
