// TValidateEdit: the verdict of each mode under both decimal separators, the owner's hook that
// may mend the text or overrule the verdict, and the two colours.

#include "data/Formats.h"
#include "ui/ValidateEdit.h"

#include <QTest>

namespace {

QColor Base(const QLineEdit& e) {
    return e.palette().color(QPalette::Base);
}

// Runs with a decimal separator and puts the previous one back.
struct TDecimalSeparator {
    QChar Saved;
    explicit TDecimalSeparator(QChar sep) : Saved(zeb::FormatSettings().DecimalSeparator) {
        zeb::FormatSettings().DecimalSeparator = sep;
    }
    ~TDecimalSeparator() { zeb::FormatSettings().DecimalSeparator = Saved; }
};

} // namespace

class TstValidateEdit : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void verdict_data() {
        QTest::addColumn<int>("mode");
        QTest::addColumn<QChar>("separator");
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("valid");

        const QChar dot('.'), comma(',');
        QTest::newRow("string takes anything") << int(vmString) << dot << "abc" << true;
        QTest::newRow("string takes nothing") << int(vmString) << dot << "" << true;
        QTest::newRow("float") << int(vmFloat) << dot << "12.5" << true;
        QTest::newRow("float with blanks") << int(vmFloat) << dot << " -0.25 " << true;
        QTest::newRow("float exponent") << int(vmFloat) << dot << "1E3" << true;
        QTest::newRow("float comma under comma") << int(vmFloat) << comma << "12,5" << true;
        QTest::newRow("float comma under dot") << int(vmFloat) << dot << "12,5" << false;
        // No groups of thousands, and only the program's decimal separator.
        QTest::newRow("float group under dot") << int(vmFloat) << dot << "1,500" << false;
        QTest::newRow("float group and point") << int(vmFloat) << dot << "1,234.5" << false;
        QTest::newRow("float point under comma") << int(vmFloat) << comma << "1.5" << false;
        QTest::newRow("float group under comma") << int(vmFloat) << comma << "1.234,5" << false;
        QTest::newRow("float blank inside") << int(vmFloat) << dot << "1 500" << false;
        QTest::newRow("float empty") << int(vmFloat) << dot << "" << false;
        QTest::newRow("float letters") << int(vmFloat) << dot << "12a" << false;
        QTest::newRow("float infinity") << int(vmFloat) << dot << "inf" << false;
        QTest::newRow("float nan") << int(vmFloat) << dot << "nan" << false;
        QTest::newRow("signed negative") << int(vmSigned) << dot << "-17" << true;
        QTest::newRow("signed fraction") << int(vmSigned) << dot << "1.5" << false;
        QTest::newRow("signed beyond 32 bits") << int(vmSigned) << dot << "4294967296" << false;
        QTest::newRow("signed empty") << int(vmSigned) << dot << "" << false;
        QTest::newRow("unsigned zero") << int(vmUnsigned) << dot << "0" << true;
        QTest::newRow("unsigned positive") << int(vmUnsigned) << dot << "42" << true;
        QTest::newRow("unsigned negative") << int(vmUnsigned) << dot << "-1" << false;
        QTest::newRow("unsigned fraction") << int(vmUnsigned) << dot << "4.0" << false;
    }

    void verdict() {
        QFETCH(int, mode);
        QFETCH(QChar, separator);
        QFETCH(QString, text);
        QFETCH(bool, valid);
        const TDecimalSeparator sep(separator);
        TValidateEdit e{TValidateMode(mode)};
        e.setText(text);
        QCOMPARE(e.IsValid(), valid);
        QCOMPARE(Base(e), valid ? e.ColorOk() : e.ColorError());
    }

    void hookMendsTextAndOverrulesVerdict() {
        TValidateEdit e(vmFloat);
        int calls = 0;
        // "max" stands for 100; anything above 100 is refused although it is a number.
        e.SetOnValidInput([&calls, &e](TValidateEdit* sender, QString& sText, bool& bChange, bool& bValid) {
            QCOMPARE(sender, &e);
            ++calls;
            if (sText.trimmed() == QLatin1String("max")) {
                sText = QStringLiteral("100");
                bChange = true;
                bValid = true;
            } else if (bValid && zeb::TryStrToFloat(sText).value_or(0) > 100) {
                bValid = false;
            }
        });
        QTest::keyClicks(&e, QStringLiteral("max"));
        QVERIFY(e.IsValid());
        QCOMPARE(e.text(), QStringLiteral("100"));
        QCOMPARE(Base(e), e.ColorOk());

        e.setText(QStringLiteral("101"));
        QVERIFY(!e.IsValid());
        QCOMPARE(e.text(), QStringLiteral("101")); // not changed without bChange
        QCOMPARE(Base(e), e.ColorError());
        QVERIFY(calls >= 2);
    }

    void hookSeesVerdictOfMode() {
        TValidateEdit e(vmUnsigned);
        QList<bool> seen;
        e.SetOnValidInput([&seen](TValidateEdit*, QString&, bool&, bool& bValid) { seen << bValid; });
        e.setText(QStringLiteral("-5"));
        QVERIFY(!e.IsValid());
        e.setText(QStringLiteral("5"));
        QVERIFY(e.IsValid());
        QCOMPARE(seen.first(), false);
        QCOMPARE(seen.last(), true);
    }

    void colours() {
        TValidateEdit e(vmSigned);
        const QColor ok(10, 200, 10), error(250, 0, 0);
        e.SetColorOk(ok);
        e.SetColorError(error);
        e.setText(QStringLiteral("x"));
        QVERIFY(!e.IsValid());
        QCOMPARE(Base(e), error);
        QVERIFY(e.ShowsError());
        // A new colour shows at once on an edit already marked.
        e.SetColorError(QColor(200, 0, 0));
        QCOMPARE(Base(e), QColor(200, 0, 0));
        e.setText(QStringLiteral("7"));
        QVERIFY(e.IsValid());
        QCOMPARE(Base(e), ok);
    }

    void markGoesWhenMendedWhileTyping() {
        TValidateEdit e(vmFloat);
        QTest::keyClicks(&e, QStringLiteral("1x"));
        QCOMPARE(Base(e), e.ColorOk()); // no verdict before the owner asks
        QVERIFY(!e.IsValid());
        QTest::keyClick(&e, Qt::Key_Backspace);
        QCOMPARE(e.text(), QStringLiteral("1"));
        QCOMPARE(Base(e), e.ColorOk());
        QVERIFY(!e.ShowsError());
    }
};

QTEST_MAIN(TstValidateEdit)
#include "tst_validateedit.moc"
