// Tasks of the extension, read and written again. The tables are in tasks.json.

#include "pmxjsonserializeobject.h"
#include "pmxkovbhipcquerysettingstaskresponse.h"
#include "pmxkovbhipctask.h"
#include "pmxkovbhipcuistringstaskresponse.h"
#include "vectors.h"

#include <sstream>

namespace {

/// Compact and with sorted keys, as records are written; a JSON string means its own text.
std::string json(const QJsonValue &value)
{
    if (value.isString())
        return value.toString().toStdString();
    const QJsonDocument document =
        value.isArray() ? QJsonDocument(value.toArray()) : QJsonDocument(value.toObject());
    return document.toJson(QJsonDocument::Compact).toStdString();
}

} // namespace

class TestPmxTaskRecords : public QObject {
    Q_OBJECT
private Q_SLOTS:
    /// The expected output, if it differs from the input.
    void rewritten_data() { ADD_VECTORS("tasks.json", "rewritten"); }
    void rewritten()
    {
        const VectorRow row;
        pmxKovBhIpcTask task;
        QVERIFY(pmxJsonSerializeObject(task, json(row.at(1)), 0));
        std::ostringstream out;
        QVERIFY(pmxJsonSerializeObject(task, out, 0));
        QCOMPARE(out.str(), json(row.at(row.at(2).isNull() ? 1 : 2)));
    }

    /// Answers, and whether they can be read; without its own record an answer cannot.
    void answers_data() { ADD_VECTORS("tasks.json", "answers"); }
    void answers()
    {
        const VectorRow row;
        pmxKovBhIpcUiStringsTaskResponse strings;
        pmxKovBhIpcQuerySettingsTaskResponse settings;
        auto &answer = row.text(0) == u"ui_strings"
            ? static_cast<pmxKovBhIpcTaskResponse &>(strings)
            : settings;
        QCOMPARE(pmxJsonSerializeObject(answer, json(row.at(1)), 0), row.at(2).toBool());
        std::ostringstream out;
        QVERIFY(pmxJsonSerializeObject(answer, out, 0));
        QCOMPARE(out.str() == json(row.at(1)), row.at(2).toBool());
    }

    /// If a message could not be read, its id and type may still be known.
    void failed_data() { ADD_VECTORS("tasks.json", "failed"); }
    void failed()
    {
        const VectorRow row;
        pmxKovBhIpcTask task;
        QVERIFY(!pmxJsonSerializeObject(task, json(row.at(0)), 0));
        QCOMPARE(task.readFailed(), row.text(0) != u"hello");
        QCOMPARE(task.id, row.bytes(1).toStdString());
        QCOMPARE(task.type, row.bytes(2).toStdString());
        QCOMPARE(task.create_downloads.downloads.size(),
                 std::size_t(task.type == "create_downloads"));
        QVERIFY(!task.create_downloads.catchedDownloads);
    }

    void thrown_data() { ADD_VECTORS("tasks.json", "thrown"); }
    void thrown()
    {
        const VectorRow row;
        try {
            pmxKovBhIpcTask task;
            pmxJsonSerializeObject(task, json(row.at(0)), 0);
            QFAIL("nothing was thrown");
        } catch (const std::runtime_error &error) {
            QCOMPARE(error.what(),
                     "\"type mismatch! call is<type>() before get<type>()\" && is<object>()");
        }
    }

    void settingsEquality()
    {
        WebExtensionSettings defaults;
        std::ostringstream out;
        QVERIFY(pmxJsonSerializeObject(defaults, out, 0));
        const QByteArray text = QByteArray::fromStdString(out.str());
        for (const QByteArray &piece : text.split(',')) {
            // A different value of one member.
            const QByteArray member = piece.mid(piece.lastIndexOf('{') + 1);
            QByteArray other = member;
            other.replace("true", "FALSE").replace("false", "true").replace("FALSE", "false");
            other.replace(":\"", ":\"1");
            WebExtensionSettings changed;
            QVERIFY(pmxJsonSerializeObject(
                changed, QByteArray(text).replace(member, other).toStdString(), 0));
            // A change of "dlvideo" alone is not reported.
            QVERIFY2((changed == defaults) == member.startsWith("\"dlvideo"), member);
        }
    }
};

QTEST_GUILESS_MAIN(TestPmxTaskRecords)
#include "tst_pmxtaskrecords.moc"
