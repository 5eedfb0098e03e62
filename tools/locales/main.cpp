// Converts the extension's texts between messages.json and Qt's .ts files, so that all texts are
// translated in one place.
//
//   kov_locales source EN_JSON OUT_CPP          the extension's texts as a source for lupdate
//   kov_locales messages EN_JSON QM LOCALE OUT  the messages.json of one language
//   kov_locales hosttexts OUT_JS QM...          what the host says in its user's language, in all
//   of
//                                               them, as a JavaScript module
//
// Untranslated texts are left out: browsers fall back to the default language.

#include <QCoreApplication>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLocale>
#include <QSaveFile>
#include <QTextStream>
#include <QTranslator>

namespace {

constexpr char context[] = "Extension";
constexpr QStringView language = u"language";
constexpr QStringView direction = u"direction";

bool isSetByBuild(const QString &key) { return key == language || key == direction; }

QJsonObject readMessages(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        qFatal("%s: %s", qPrintable(path), qPrintable(file.errorString()));
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(file.readAll(), &error);
    if (!document.isObject())
        qFatal("%s: %s", qPrintable(path), qPrintable(error.errorString()));
    return document.object();
}

QString textOf(const QJsonValue &message) { return message[u"message"].toString(); }

QString escaped(QString text)
{
    return text.replace(u'\\', QStringLiteral("\\\\")).replace(u'"', QStringLiteral("\\\""));
}

QByteArray sourceFor(const QJsonObject &messages)
{
    QString source;
    QTextStream stream(&source);
    stream << "#include <QtGlobal>\n[[maybe_unused]] static const char *const texts[] = {\n";
    for (auto it = messages.begin(); it != messages.end(); ++it) {
        if (isSetByBuild(it.key()))
            continue;
        stream << "    //: " << it.value()[u"description"].toString()
               << "\n    QT_TRANSLATE_NOOP(\"" << context << "\", \"" << escaped(textOf(it.value()))
               << "\"),\n";
    }
    stream << "};\n";
    return source.toUtf8();
}

QByteArray translated(const QJsonObject &messages, const QString &translationPath,
                      const QLocale &locale)
{
    QTranslator translator;
    if (!translator.load(translationPath))
        qFatal("%s: cannot be read", qPrintable(translationPath));
    QJsonObject result;
    for (auto it = messages.begin(); it != messages.end(); ++it) {
        const QString text = translator.translate(context, textOf(it.value()).toUtf8().constData());
        if (text.isEmpty())
            continue;
        QJsonObject message = it.value().toObject();
        message.remove(u"description");
        message[u"message"] = text;
        result[it.key()] = message;
    }
    const QString side =
        locale.textDirection() == Qt::RightToLeft ? QStringLiteral("rtl") : QStringLiteral("ltr");
    for (const auto &[key, value] :
         {std::pair(language, locale.bcp47Name()), std::pair(direction, side)}) {
        QJsonObject message;
        message[u"message"] = value;
        result[key.toString()] = message;
    }
    return QJsonDocument(result).toJson();
}

QByteArray hostTexts(const QStringList &translationPaths)
{
    constexpr char connectionFailure[] = "Connection failure";
    QJsonArray texts{QLatin1String(connectionFailure)};
    for (const QString &path : translationPaths) {
        QTranslator translator;
        if (!translator.load(path))
            qFatal("%s: cannot be read", qPrintable(path));
        const QString text =
            translator.translate("VhIpcIncomingDownloadsClient", connectionFailure);
        if (text.isEmpty())
            qFatal("%s: does not translate \"%s\"", qPrintable(path), connectionFailure);
        if (!texts.contains(text))
            texts.append(text);
    }
    return "// Made by the build from the host's translations.\n\n"
           "/** The error of a hand-over when the application does not come up, or breaks off. */\n"
           "export const connectionFailures = "
        + QJsonDocument(texts).toJson(QJsonDocument::Compact) + ";\n";
}

void write(const QString &path, const QByteArray &content)
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size() || !file.commit())
        qFatal("%s: %s", qPrintable(path), qPrintable(file.errorString()));
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments().sliced(1);
    const QString mode = arguments.value(0);
    if (mode == u"source" && arguments.size() == 3)
        write(arguments[2], sourceFor(readMessages(arguments[1])));
    else if (mode == u"messages" && arguments.size() == 5)
        write(arguments[4],
              translated(readMessages(arguments[1]), arguments[2], QLocale(arguments[3])));
    else if (mode == u"hosttexts" && arguments.size() > 2)
        write(arguments[1], hostTexts(arguments.sliced(2)));
    else
        qFatal("usage: kov_locales source EN_JSON OUT_CPP | messages EN_JSON QM LOCALE OUT"
               " | hosttexts OUT_JS QM...");
    return 0;
}
