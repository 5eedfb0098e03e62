#include "pmxkovbhipcuistringstaskprocessor.h"

#include "pmxkovbhipcuistringstaskresponse.h"
#include "pmxtaskresponses.h"

#include <QCoreApplication>

namespace {

/// The caption in the user's language, naming the program.
std::string caption(const char *sourceText)
{
    return QCoreApplication::translate("QObject", sourceText)
        .arg(QStringLiteral("KOV"))
        .toStdString();
}

} // namespace

void pmxKovBhIpcUiStringsTaskProcessor::process(std::shared_ptr<pmxKovBhIpcTask> task,
                                                Callback callback)
{
    const auto response = pmxResponseTo<pmxKovBhIpcUiStringsTaskResponse>(*task);
    response->dllink = caption(QT_TRANSLATE_NOOP("QObject", "Download with %1"));
    response->dlall = caption(QT_TRANSLATE_NOOP("QObject", "Download all with %1"));
    response->dlselected = caption(QT_TRANSLATE_NOOP("QObject", "Download selected with %1"));
    response->dlvideo = caption(QT_TRANSLATE_NOOP("QObject", "Download video with %1"));
    callback(task, response);
}
