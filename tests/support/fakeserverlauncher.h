#pragma once

#include "qtabstractserverlauncher.h"

#include <utility>

/// Counts the launches; each ends at once, or when the test says so.
class FakeServerLauncher : public QtAbstractServerLauncher {
public:
    enum class Ends { Later, AtOnce, AtOnceFailed };

    void launchServer() override
    {
        ++m_launches;
        if (m_ends != Ends::Later)
            finish(m_ends == Ends::AtOnceFailed ? 1 : 0);
    }
    void finish(int code)
    {
        Q_EMIT launchServerFinished(AbstractError(code, "GenericError", "test", "test"));
    }
    void setEnds(Ends ends) { m_ends = ends; }
    /// How many launches there were since this was last asked for.
    int takeLaunches() { return std::exchange(m_launches, 0); }

private:
    Ends m_ends = Ends::AtOnce;
    int m_launches = 0;
};
