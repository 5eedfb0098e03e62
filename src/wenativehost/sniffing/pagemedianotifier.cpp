#include "pagemedianotifier.h"

#include "consolemessagessender.h"
#include "mediarequestsanalyzer.h"
#include "mediarequestscollector.h"
#include "pmxflvsniffcallproctask.h"
#include "pmxkovbhipcpagemediaresponse.h"
#include "pmxtaskresponses.h"

#include <functional>
#include <string>
#include <utility>

PageMediaNotifier::PageMediaNotifier(QSharedPointer<MediaRequestsCollector> media,
                                     QSharedPointer<MediaRequestsAnalyzer> analyzer,
                                     QWeakPointer<ConsoleMessagesSender> sender, QObject *parent)
    : QObject(parent), m_media(std::move(media)), m_analyzer(std::move(analyzer)),
      m_sender(std::move(sender))
{
    connect(m_media.data(), &MediaRequestsCollector::pageSettled, this,
            &PageMediaNotifier::onPageSettled);
}

void PageMediaNotifier::onPageSettled(const std::string &pageUrl)
{
    const auto sender = m_sender.toStrongRef();
    if (!m_isWanted || pageUrl.empty() || !sender)
        return;
    pmxKovBhIpcPageMediaResponse response(pageUrl);
    pmxFlvSniffCallProcTask wholePage;
    wholePage.webPageUrl = pageUrl;
    bool isEmpty = true;
    for (const MediaRequest &media : m_analyzer->candidates(wholePage))
        isEmpty = !response.add(media, false) && isEmpty;
    for (const MediaRequest &part : m_media->partsOf(pageUrl))
        isEmpty = !response.add(part, true) && isEmpty;

    const bool wasEmpty = !m_told.find(pageUrl);
    if (isEmpty && wasEmpty)
        return;
    const auto text = pmxResponseText(response);
    if (!text)
        return;
    const size_t hash = std::hash<std::string>()(*text);
    if (isEmpty)
        m_told.remove(pageUrl);
    else if (size_t &last = m_told.touch(pageUrl); std::exchange(last, hash) == hash && !wasEmpty)
        return;
    sender->sendUtf8(*text);
}
