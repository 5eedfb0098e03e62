#include "qtappsettingsinmemorymanager.h"

#include <QSignalSpy>
#include <QTest>

using Values = QtAppAbstractSettingsManager::Values;
using ValuesList = QtAppAbstractSettingsManager::ValuesList;

class TestQtAppSettingsInMemoryManager : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void setValues_data();
    void setValues();
    void defaultsBeneathValues();
    void wholeTables();
    void signalsComeWithoutTheLock();
};

void TestQtAppSettingsInMemoryManager::setValues_data()
{
    QTest::addColumn<ValuesList>("given");
    QTest::addColumn<ValuesList>("reported");
    QTest::addColumn<Values>("kept");
    const Values before{{u"a"_qs, u"x"_qs}};
    const auto row = [](const char *name, const ValuesList &given, const ValuesList &reported,
                        const Values &kept) { QTest::newRow(name) << given << reported << kept; };
    row("none", {}, {}, before);
    row("as they are", {{u"a"_qs, u"x"_qs}, {u"d"_qs, u"1"_qs}, {u"no"_qs, u""_qs}}, {}, before);
    row("some differ", {{u"a"_qs, u"x"_qs}, {u"b"_qs, u"y"_qs}}, {{u"b"_qs, u"y"_qs}},
        {{u"a"_qs, u"x"_qs}, {u"b"_qs, u"y"_qs}});
    const ValuesList twice{{u"a"_qs, u"1"_qs}, {u"a"_qs, u"2"_qs}};
    row("same key twice", twice, twice, {{u"a"_qs, u"2"_qs}});
    row("same key there and back", {{u"a"_qs, u"1"_qs}, {u"a"_qs, u"x"_qs}}, {{u"a"_qs, u"1"_qs}},
        {{u"a"_qs, u"1"_qs}});
    row("emptied", {{u"a"_qs, u""_qs}}, {{u"a"_qs, u""_qs}}, {{u"a"_qs, u""_qs}});
}

void TestQtAppSettingsInMemoryManager::setValues()
{
    QFETCH(const ValuesList, given);
    QFETCH(const ValuesList, reported);
    QtAppSettingsInMemoryManager settings;
    settings.setDefaultValue(u"d"_qs, u"1"_qs);
    settings.setValue(u"a"_qs, u"x"_qs);
    const QSignalSpy spy(&settings, &QtAppSettingsInMemoryManager::valuesChanged);
    settings.setValues(given, u"me"_qs);
    QCOMPARE(spy.size(), reported.isEmpty() ? 0 : 1);
    if (!reported.isEmpty())
        QCOMPARE(spy.at(0), (QVariantList{QVariant::fromValue(reported), u"me"_qs}));
    QTEST(settings.allValues(), "kept");
}

void TestQtAppSettingsInMemoryManager::defaultsBeneathValues()
{
    QtAppSettingsInMemoryManager settings;
    const QSignalSpy reset(&settings, &QtAppSettingsInMemoryManager::settingsResetToDefaults);
    settings.resetToDefaults(u"me"_qs);
    QCOMPARE(reset.size(), 0);

    settings.setAllDefaultValues({{u"a"_qs, u"1"_qs}});
    settings.setDefaultValue(u"b"_qs, u"2"_qs);
    settings.setValue(u"a"_qs, u"x"_qs);
    settings.setValue(u"a"_qs, u"1"_qs);
    QCOMPARE(settings.allValues(), (Values{{u"a"_qs, u"1"_qs}}));
    settings.setAllDefaultValues({{u"a"_qs, u"3"_qs}});
    QCOMPARE(settings.allDefaultValues(), (Values{{u"a"_qs, u"3"_qs}}));
    QCOMPARE(settings.value(u"a"_qs), u"1");
    QVERIFY(settings.value(u"b"_qs).isNull());

    settings.resetToDefaults(u"me"_qs);
    QCOMPARE(reset, (QList<QVariantList>{{u"me"_qs}}));
    QCOMPARE(settings.value(u"a"_qs), u"3");
    QCOMPARE(settings.defaultValue(u"a"_qs), u"3");
}

void TestQtAppSettingsInMemoryManager::wholeTables()
{
    QtAppSettingsInMemoryManager settings;
    const QSignalSpy spy(&settings, &QtAppSettingsInMemoryManager::allValuesChanged);
    const Values values{{u"a"_qs, u"1"_qs}};
    for (const QString &source : {u"one"_qs, u"same again"_qs}) {
        settings.setAllValues(values, source);
        QCOMPARE(settings.allValues(), values);
    }
    QCOMPARE(spy, (QList<QVariantList>{{u"one"_qs}, {u"same again"_qs}}));
}

/// A listener that changes settings again would stand still if it were called under the lock.
void TestQtAppSettingsInMemoryManager::signalsComeWithoutTheLock()
{
    QtAppSettingsInMemoryManager settings;
    const auto changeMore = [&settings] {
        settings.setValue(u"n"_qs, QString::number(settings.allValues().size()));
    };
    connect(&settings, &QtAppSettingsInMemoryManager::valuesChanged, &settings, changeMore);
    connect(&settings, &QtAppSettingsInMemoryManager::allValuesChanged, &settings, changeMore);
    connect(&settings, &QtAppSettingsInMemoryManager::settingsResetToDefaults, &settings,
            changeMore);
    settings.setValue(u"a"_qs, u"1"_qs);
    QCOMPARE(settings.value(u"n"_qs), u"2");
    settings.setAllValues({}, {});
    QCOMPARE(settings.value(u"n"_qs), u"1");
    settings.resetToDefaults({});
    QCOMPARE(settings.value(u"n"_qs), u"1");
}

QTEST_GUILESS_MAIN(TestQtAppSettingsInMemoryManager)
#include "tst_qtappsettingsinmemorymanager.moc"
