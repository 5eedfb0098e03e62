#pragma once

#include <QList>
#include <QString>
#include <QStringList>

#include <algorithm>
#include <functional>
#include <utility>

/// What was found of one link of the chain from a browser to a finished download.
struct Finding {
    enum class State { Ok, Broken, NotChecked };

    /// A name that stays: scripts and the extension's pages go by it.
    QString link;
    State state = State::Ok;
    /// What is so, in a sentence.
    QString text;
    /// What mends it, a command where there is one. For broken links only.
    QString cure;
    /// Mends it without a decision of the user's; returns whether it could. May be null.
    std::function<bool()> mend = {};
    /// Whether a broken link keeps downloads from arriving.
    bool stopsDownloads = true;
};

/// Links that belong together, in the order in which they depend on each other.
struct Chain {
    /// "browser", "host", "storage" or "application".
    QString subject;
    /// For a browser's chain, what it is called on command lines.
    QString browser;
    QString title;
    QList<Finding> findings;

    void ok(const QString &link, const QString &text)
    {
        findings.append({.link = link, .state = Finding::State::Ok, .text = text, .cure = {}});
    }
    void broken(const QString &link, const QString &text, const QString &cure,
                std::function<bool()> mend = {})
    {
        findings.append({link, Finding::State::Broken, text, cure, std::move(mend)});
    }
    /// The same for what goes wrong without harm to downloads.
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
    /// Links that cannot be looked at because one before them is broken.
    void notReached(const QStringList &links, const QString &because)
    {
        for (const QString &link : links)
            notChecked(link, because);
    }
    bool isWhole() const
    {
        return std::none_of(findings.cbegin(), findings.cend(), [](const Finding &each) {
            return each.state == Finding::State::Broken && each.stopsDownloads;
        });
    }
};
