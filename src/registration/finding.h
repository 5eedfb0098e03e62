#pragma once

#include <QList>
#include <QString>
#include <QStringList>

#include <algorithm>
#include <functional>
#include <utility>

/// The result for one link of the chain from a browser to a finished download.
struct Finding {
    enum class State { Ok, Broken, NotChecked };

    /// A stable name, for scripts.
    QString link;
    State state = State::Ok;
    /// The result in a sentence.
    QString text;
    /// How to repair it, a command if possible. For broken links only.
    QString cure;
    /// Repairs it if that needs no decision by the user; returns whether it could. May be null.
    std::function<bool()> repair = {};
    /// Whether this broken link prevents downloads.
    bool stopsDownloads = true;
};

/// Links that belong together, in the order in which they depend on each other.
struct Chain {
    /// "browser", "host", "storage" or "application".
    QString subject;
    /// For a browser's chain, the browser's id on command lines.
    QString browser;
    QString title;
    QList<Finding> findings;

    void ok(const QString &link, const QString &text)
    {
        findings.append({.link = link, .state = Finding::State::Ok, .text = text, .cure = {}});
    }
    void broken(const QString &link, const QString &text, const QString &cure,
                std::function<bool()> repair = {})
    {
        findings.append({link, Finding::State::Broken, text, cure, std::move(repair)});
    }
    /// The same for a fault that does not affect downloads.
    void impaired(const QString &link, const QString &text, const QString &cure)
    {
        broken(link, text, cure);
        findings.last().stopsDownloads = false;
    }
    void notChecked(const QString &link, const QString &text)
    {
        findings.append(
            {.link = link, .state = Finding::State::NotChecked, .text = text, .cure = {}});
    }
    /// Links that cannot be checked because an earlier one is broken.
    void notReached(const QStringList &links, const QString &because)
    {
        for (const QString &link : links)
            notChecked(link, because);
    }
    bool isIntact() const
    {
        return std::none_of(findings.cbegin(), findings.cend(), [](const Finding &each) {
            return each.state == Finding::State::Broken && each.stopsDownloads;
        });
    }
};
