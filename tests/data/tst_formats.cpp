// Date, time and number texts: the date table under every index and separator, the time
// kinds and the float pattern language. The language choice is tst_texts' selection.

#include "data/Formats.h"

#include <QTest>

#include <cmath>
#include <limits>

using namespace zeb;

namespace {
// 2024-03-01 12:00:00.250 as seconds since 1 January 2000.
const double kT = (8826.0 + 0.5) * 86400.0 + 0.25;
} // namespace

class TstFormats : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() {
        SetSystemLocaleOverride(QLocale(QLocale::English, QLocale::UnitedKingdom));
        SetFormats(0);
    }
    void cleanupTestCase() { SetSystemLocaleOverride(std::nullopt); }

    void dateTable_data() {
        QTest::addColumn<int>("index");
        QTest::addColumn<int>("separator");
        QTest::addColumn<QString>("kind0");
        QTest::addColumn<QString>("kind1");
        QTest::newRow("0 .") << 0 << 0 << "2024-03-01 12:00:00" << "2024-03-01 12:00:00.250";
        QTest::newRow("0 ,") << 0 << 1 << "2024-03-01 12:00:00" << "2024-03-01 12:00:00,250";
        QTest::newRow("1") << 1 << 0 << "01/03/2024 12:00:00" << "01/03/2024 12:00:00.250";
        QTest::newRow("2") << 2 << 1 << "03/01/2024 12:00:00" << "03/01/2024 12:00:00,250";
        QTest::newRow("3") << 3 << 1 << "01.03.2024 12:00:00" << "01.03.2024 12:00:00,250";
        QTest::newRow("4") << 4 << 0 << "01-Mar-2024 12:00:00" << "01-Mar-2024 12:00:00.250";
        QTest::newRow("5") << 5 << 0 << "2024-Mar-01 12:00:00" << "2024-Mar-01 12:00:00.250";
        QTest::newRow("7 is 0") << 7 << 0 << "2024-03-01 12:00:00" << "2024-03-01 12:00:00.250";
        QTest::newRow("-1 is 0") << -1 << 2 << "2024-03-01 12:00:00" << "2024-03-01 12:00:00.250";
    }
    void dateTable() {
        QFETCH(int, index);
        QFETCH(int, separator);
        QFETCH(QString, kind0);
        QFETCH(QString, kind1);
        SetFormats(index % 2 ? 1 : 0, index, separator);
        QCOMPARE(FormatTime(zeb::TTimeKind::DateTime, kT), kind0);
        QCOMPARE(FormatTime(zeb::TTimeKind::DateTimeMs, kT), kind1);
        QCOMPARE(FormatTime(zeb::TTimeKind::Date, kT), kind0.left(kind0.indexOf(QLatin1Char(' '))));
        // The fixed kind ignores every setting.
        QCOMPARE(TimeFormat(zeb::TTimeKind::Fixed), QStringLiteral("MM/dd/yyyy HH:mm:ss"));
        QCOMPARE(FormatTime(zeb::TTimeKind::Fixed, kT), QStringLiteral("03/01/2024 12:00:00"));
    }

    void timeKinds_data() {
        QTest::addColumn<int>("kind");
        QTest::addColumn<QString>("pattern");
        QTest::addColumn<QString>("text");
        QTest::newRow("0") << 0 << "dd.MM.yyyy HH:mm:ss" << "01.03.2024 12:00:00";
        QTest::newRow("1") << 1 << "dd.MM.yyyy HH:mm:ss,zzz" << "01.03.2024 12:00:00,250";
        QTest::newRow("2") << 2 << "HH:mm:ss" << "12:00:00";
        QTest::newRow("3") << 3 << "HH:mm:ss,zzz" << "12:00:00,250";
        QTest::newRow("4") << 4 << "dd.MM.yyyy" << "01.03.2024";
        QTest::newRow("5") << 5 << "HH:mm" << "12:00";
        QTest::newRow("6") << 6 << "dd.MM.yyyy HH:mm" << "01.03.2024 12:00";
        QTest::newRow("7") << 7 << "" << "";
        QTest::newRow("8") << 8 << "MM/dd/yyyy HH:mm:ss" << "03/01/2024 12:00:00";
        QTest::newRow("9") << 9 << "" << "";
        QTest::newRow("-1") << -1 << "" << "";
    }
    void timeKinds() {
        QFETCH(int, kind);
        QFETCH(QString, pattern);
        QFETCH(QString, text);
        SetFormats(1, 3, 1);
        QCOMPARE(TimeFormat(TTimeKind(kind)), pattern);
        QCOMPARE(FormatTime(TTimeKind(kind), kT), text);
    }

    void internationalMode() {
        SetFormats(2, 3, 1); // the settings values do not matter
        QCOMPARE(FormatTime(zeb::TTimeKind::DateTimeMs, kT), QStringLiteral("01-Mar-2024 12:00:00.250"));
        QCOMPARE(FormatTime(zeb::TTimeKind::ShortTime, kT), QStringLiteral("12:00"));
        QCOMPARE(FormatSettings().DecimalSeparator, QLatin1Char('.'));
    }

    void systemLocaleMode() {
        SetSystemLocaleOverride(QLocale(QLocale::German, QLocale::Germany));
        SetFormats(3);
        QCOMPARE(FormatSettings().DecimalSeparator, QLatin1Char(','));
        QCOMPARE(FormatSettings().DateSeparator, QLatin1Char('.'));
        QCOMPARE(FormatTime(zeb::TTimeKind::Time, kT), QStringLiteral("12:00:00"));
        QVERIFY(FormatTime(zeb::TTimeKind::Date, kT).startsWith(QStringLiteral("01.03.")));

        SetSystemLocaleOverride(QLocale(QLocale::English, QLocale::UnitedStates));
        SetFormats(3);
        const QString pm = FormatTime(zeb::TTimeKind::Time, kT + 3600.0);
        QVERIFY2(pm.startsWith(QStringLiteral("1:00:00")) && pm.endsWith(QStringLiteral("PM")), qPrintable(pm));
        QCOMPARE(FormatSettings().DateSeparator, QLatin1Char('/'));
    }

    void dateTimePatterns_data() {
        QTest::addColumn<QString>("pattern");
        QTest::addColumn<double>("t");
        QTest::addColumn<QString>("text");
        QTest::newRow("epoch") << "yyyy-MM-dd HH:mm:ss.zzz" << 0.0 << "2000-01-01 00:00:00.000";
        QTest::newRow("leap day") << "dd.MM.yy" << (59.0 * 86400.0) << "29.02.00";
        QTest::newRow("end of range") << "yyyy-MM-dd" << 36500.0 * 86400.0 << "2099-12-07";
        QTest::newRow("ms round up carries") << "HH:mm:ss.zzz" << 59.9996 << "00:01:00.000";
        QTest::newRow("ms round") << "ss.zzz" << 1.2344 << "01.234";
        QTest::newRow("12 hour am") << "h:mm AM/PM" << 30600.0 << "8:30 AM";
        QTest::newRow("12 hour noon") << "hh:mm am/pm" << 43200.0 << "12:00 pm";
        QTest::newRow("12 hour midnight") << "h:mm AM/PM" << 0.0 << "12:00 AM";
        QTest::newRow("24 hour") << "H:mm" << 30600.0 << "8:30";
        QTest::newRow("separators") << "dd/MM/yyyy HH:mm" << kT << "01-03-2024 12:00";
        QTest::newRow("quoted") << "'day' d 'of' MMMM" << kT << "day 1 of March";
        QTest::newRow("day name") << "ddd dddd" << kT << "Fri Friday";
        QTest::newRow("before the epoch") << "yyyy-MM-dd HH:mm:ss" << -1.0 << "1999-12-31 23:59:59";
    }
    void dateTimePatterns() {
        QFETCH(QString, pattern);
        QFETCH(double, t);
        QFETCH(QString, text);
        TFormatSettings fs = TFormatSettings::International();
        fs.DateSeparator = QLatin1Char('-');
        QCOMPARE(FormatDateTime(pattern, t, fs), text);
    }

    void floatPatterns_data() {
        QTest::addColumn<QString>("pattern");
        QTest::addColumn<double>("value");
        QTest::addColumn<QString>("text");
        // The classic table of the pattern language.
        const struct {
            const char* p;
            const char* t[4];
        } table[] = {
            {"0", {"1234", "-1234", "1", "0"}},
            {"0.00", {"1234.00", "-1234.00", "0.50", "0.00"}},
            {"#.##", {"1234", "-1234", ".5", ""}},
            {"#,##0.00", {"1,234.00", "-1,234.00", "0.50", "0.00"}},
            {"#,##0.00;(#,##0.00)", {"1,234.00", "(1,234.00)", "0.50", "0.00"}},
            {"#,##0.00;;Zero", {"1,234.00", "-1,234.00", "0.50", "Zero"}},
            {"0.000E+00", {"1.234E+03", "-1.234E+03", "5.000E-01", "0.000E+00"}},
            {"#.###E-0", {"1.234E3", "-1.234E3", "5E-1", "0E0"}},
        };
        const double values[4] = {1234, -1234, 0.5, 0};
        for (const auto& row : table)
            for (int i = 0; i < 4; ++i)
                QTest::addRow("%s %g", row.p, values[i]) << row.p << values[i] << row.t[i];
        // The program's own choices and what users type.
        QTest::newRow("0.0 round half up") << "0.0" << 0.25 << "0.3";
        QTest::newRow("0.0 negative half") << "0.0" << -0.25 << "-0.3";
        QTest::newRow("0.0 float widened") << "0.0" << double(23.45f) << "23.5";
        QTest::newRow("0.00 binary below half") << "0.00" << 2.675 << "2.68";
        QTest::newRow("no negative zero") << "0.0" << -0.04 << "0.0";
        QTest::newRow("#.0") << "#.0" << 0.0 << ".0";
        QTest::newRow("#.0 one") << "#.0" << 1.0 << "1.0";
        QTest::newRow("#.# whole") << "#.#" << 3.0 << "3";
        QTest::newRow("0.0E+00") << "0.0E+00" << 0.000123456 << "1.2E-04";
        QTest::newRow("0.0E+00 carry") << "0.0E+00" << 9.96 << "1.0E+01";
        QTest::newRow("0.00000E+00 big") << "0.00000E+00" << 6.02214076e23 << "6.02214E+23";
        QTest::newRow("0.000 tiny") << "0.000" << 1e-20 << "0.000";
        QTest::newRow("0 huge") << "0" << 1e20 << "100000000000000000000";
        QTest::newRow("0.000 carry") << "0.000" << 9.9995 << "10.000";
        QTest::newRow("00.0 pads") << "00.0" << 3.14159 << "03.1";
        QTest::newRow("literals") << "0.0 'bar'" << 1.0 << "1.0 bar";
        QTest::newRow("nan") << "0.0" << std::numeric_limits<double>::quiet_NaN() << "NAN";
        QTest::newRow("-inf") << "0.0" << -std::numeric_limits<double>::infinity() << "-INF";
    }
    void floatPatterns() {
        QFETCH(QString, pattern);
        QFETCH(double, value);
        QFETCH(QString, text);
        QCOMPARE(FormatFloat(pattern, value, TFormatSettings::International()), text);
    }

    void floatPatternsUseTheDecimalSeparator() {
        SetFormats(0, 0, 1);
        QCOMPARE(FormatFloat(QStringLiteral("0.000"), 1234.5678), QStringLiteral("1234,568"));
        QCOMPARE(FormatFloat(QStringLiteral("#,##0.0"), 1234.5), QStringLiteral("1.234,5"));
        QCOMPARE(FormatFloat(QStringLiteral("0.0E+00"), 0.5), QStringLiteral("5,0E-01"));
    }

    void numberConversion_data() {
        QTest::addColumn<double>("value");
        QTest::addColumn<QString>("text");
        QTest::newRow("0.06") << 0.06 << "0.06";
        QTest::newRow("0") << 0.0 << "0";
        QTest::newRow("-12.5") << -12.5 << "-12.5";
        QTest::newRow("1/3") << 1.0 / 3.0 << "0.333333333333333";
        QTest::newRow("1e20") << 1e20 << "1E20";
        QTest::newRow("1.5e-7") << 1.5e-7 << "1.5E-7";
        QTest::newRow("123456") << 123456.0 << "123456";
        QTest::newRow("second as a day fraction") << 1.0 / 86400.0 << "1.15740740740741E-5";
    }
    void numberConversion() {
        QFETCH(double, value);
        QFETCH(QString, text);
        const TFormatSettings fs = TFormatSettings::International();
        QCOMPARE(FloatToStr(value, fs), text);
        const auto back = TryStrToFloat(text, fs);
        QVERIFY(back);
        QVERIFY(std::abs(*back - value) <= 1e-14 * std::abs(value));
    }

    void stringToNumberFallsBack() {
        TFormatSettings comma = TFormatSettings::International();
        comma.DecimalSeparator = QLatin1Char(',');
        QCOMPARE(StrToFloatDef(QStringLiteral(" 0,06 "), 1, comma), 0.06);
        QCOMPARE(StrToFloatDef(QStringLiteral("0.06"), 1, comma), 1.0);
        QCOMPARE(StrToFloatDef(QStringLiteral("abc"), 7.5, comma), 7.5);
        QCOMPARE(StrToFloatDef(QString(), 7.5, comma), 7.5);
        QCOMPARE(StrToFloatDef(QStringLiteral("1.2.3"), 7.5, comma), 7.5);
    }
};

QTEST_GUILESS_MAIN(TstFormats)
#include "tst_formats.moc"
