#include "pmxkovbhipcuistringstaskprocessor.h"

#include "consolemessagessender.h"
#include "pmxkovbhipcuistringstaskresponse.h"
#include "pmxtaskresponses.h"

#include <QCoreApplication>

#include <utility>

namespace {

/// The caption in the user's language, with the product's name.
std::string caption(const char *sourceText)
{
    return QCoreApplication::translate("QObject", sourceText)
        .arg(QStringLiteral("KOV"))
        .toStdString();
}

void fill(pmxKovBhIpcUiStringsTaskResponse &response)
{
    //: Menu entry for one link; %1 is the product's name
    response.dllink = caption(QT_TRANSLATE_NOOP("QObject", "Download with %1"));
    //: Menu entry for all links of a page; %1 is the product's name
    response.dlall = caption(QT_TRANSLATE_NOOP("QObject", "Download all with %1"));
    //: Menu entry for the links within the selected part of a page; %1 is the product's name
    response.dlselected = caption(QT_TRANSLATE_NOOP("QObject", "Download selected with %1"));
    //: Menu entry for a video; %1 is the product's name
    response.dlvideo = caption(QT_TRANSLATE_NOOP("QObject", "Download video with %1"));
}

} // namespace

pmxKovBhIpcUiStringsTaskProcessor::pmxKovBhIpcUiStringsTaskProcessor(
    QWeakPointer<ConsoleMessagesSender> sender)
    : m_sender(std::move(sender))
{
}

void pmxKovBhIpcUiStringsTaskProcessor::process(std::shared_ptr<pmxKovBhIpcTask> task,
                                                Callback callback)
{
    const auto response = pmxResponseTo<pmxKovBhIpcUiStringsTaskResponse>(*task);
    fill(*response);
    m_sentCaption = response->dllink;
    callback(task, response);
}

void pmxKovBhIpcUiStringsTaskProcessor::onTranslationsLoaded()
{
    const auto sender = m_sender.toStrongRef();
    pmxKovBhIpcUiStringsTaskResponse response;
    fill(response);
    if (!sender || m_sentCaption.empty() || response.dllink == m_sentCaption)
        return;
    m_sentCaption = response.dllink;
    response.type = kovIpcTaskTypeName(kov_ipc_task_ui_strings);
    if (const auto text = pmxResponseText(response))
        sender->sendUtf8(*text);
}
