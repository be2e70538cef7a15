// The display template: partial templates stay partial, list sections are found by prefix in
// file order and come back renumbered, curve sections are matched to a recording's curves,
// present keys are set whatever they hold, odd files stay bounded, a failed save keeps the old
// file, and the limit test.

#include "Files.h"
#include "config/IniFile.h"
#include "config/MseSettings.h"
#include "data/Formats.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>

#include <cmath>
#include <limits>

#ifdef Q_OS_UNIX
#include <csignal>
#include <sys/resource.h>
#endif

namespace {

// A recording's curve as the loader makes it: names from the file, display values unset.
void AddRecordingCurve(TMseSettings& mse, const QString& module, const QString& channel,
                       const QString& title) {
    TMseSettingsCurve& c = mse.Curves.Add();
    c.sModulName.Set(module);
    c.sChannelName.Set(channel);
    c.Title.Set(title);
    c.Color.Set(111);
    c.Width.Set(1);
}

// Every key of the file as "Section/Key=value", in file order.
QStringList Entries(const TIniFile& ini) {
    QStringList out;
    const QStringList sections = ini.Sections();
    for (const QString& s : sections) {
        out << QLatin1Char('[') + s + QLatin1Char(']');
        const QStringList keys = ini.Keys(s);
        for (const QString& k : keys)
            out << s + QLatin1Char('/') + k + QLatin1Char('=') + ini.ReadString(s, k);
    }
    return out;
}

// Every value of a template, set ones only or all, as the writer sees them.
QStringList Entries(const TMseSettings& mse, bool all) {
    TIniFile ini;
    mse.Write(ini, all);
    return Entries(ini);
}

} // namespace

class TstMseSettings : public QObject {
    Q_OBJECT

    QTemporaryDir FDir;
    QString Path(const QString& name) const { return FDir.filePath(name); }

    QString WriteFile(const QString& name, const QByteArray& bytes) const {
        return WriteBytes(Path(name), bytes) ? Path(name) : QString();
    }

private Q_SLOTS:
    void init() { zeb::SetFormats(0, 0, 0); }

    void clearedTemplateHasDefaultsAndNothingSet() {
        TMseSettings mse;
        mse.Title.Set("x");
        mse.AxisLeft.Max.Set(5);
        mse.Texts.Add();
        mse.Clear();
        QVERIFY(Entries(mse, false).isEmpty());
        QVERIFY(mse.Texts.IsEmpty());
        QCOMPARE(mse.ShowName.Value, true);
        QCOMPARE(mse.OnlineRate.Value, 1000);
        QCOMPARE(mse.FontLegend.Name.Value, QStringLiteral("Arial"));
        QCOMPARE(mse.FontLegend.Size.Value, 8);
        QCOMPARE(mse.AxisBottom.Format.Value, QString());
        QCOMPARE(mse.AxisRight.Format.Value, QStringLiteral("0.000"));
        QCOMPARE(mse.Cursor2.YFormat.Value, QStringLiteral("0.000"));
        QCOMPARE(mse.Print.Landscape.Value, true);
        QCOMPARE(mse.Print.CheckBoxes.Value, true);
        QCOMPARE(mse.Print.Proportional.Value, false);
    }

    void fileLooksAsTheSuiteWritesIt() {
        TMseSettings mse;
        mse.Title.Set("My plot");
        mse.ShowName.Set(false);
        mse.FontAxes.Size.Set(10);
        mse.AxisLeft.Min.Set(-1.5);
        mse.AxisLeft.Grid.Set(true);
        AddRecordingCurve(mse, "M1", "T1", "Temp");
        QVERIFY(mse.SaveFile(Path("look.mse")));
        const QByteArray bytes = ReadBytes(Path("look.mse"));
        QCOMPARE(bytes, QByteArray("[General]\r\nTitle='My plot'\r\nShowName=0\r\n\r\n"
                                   "[Font Axes]\r\nSize=10\r\n\r\n"
                                   "[Axis Left]\r\nMin='-1.5'\r\nGrid=1\r\n\r\n"
                                   "[Curve0]\r\nModulName='M1'\r\nChannelName='T1'\r\nTitle='Temp'\r\n"
                                   "Color=111\r\nWidth=1\r\n"));
    }

    void everyValueRoundTrips() {
        TMseSettings mse;
        // Every value away from its default, through the writer's own list of keys.
        TIniFile all;
        mse.Write(all, true);
        TIniFile changed;
        const QStringList sections = all.Sections();
        for (const QString& s : sections) {
            const QStringList keys = all.Keys(s);
            for (const QString& k : keys) {
                const QString v = all.ReadString(s, k);
                if (k.endsWith(QLatin1String("Format")) || k == QLatin1String("Name") ||
                    k == QLatin1String("Title") || k == QLatin1String("Foot"))
                    changed.WriteString(s, k, v + QLatin1String("#"));
                else if (k == QLatin1String("Min") || k == QLatin1String("Max") || k == QLatin1String("Inc"))
                    changed.WriteFloat(s, k, 0.5 + all.ReadFloat(s, k, 0));
                else if (const int v = all.ReadInteger(s, k, -1); v == 0 || v == 1)
                    changed.WriteInteger(s, k, 1 - v); // codes and flags flip
                else
                    changed.WriteInteger(s, k, k == QLatin1String("XType") ? v - 1 : v + 1);
            }
        }
        changed.WriteString("Curve0", "ModulName", "M");
        changed.WriteInteger("Curve0", "Color", 0x00FF8040);
        changed.WriteString("Calc0", "Formula", "c0*2");
        changed.WriteString("Text0", "Text", "hello");
        changed.WriteInteger("Text0", "X", -20);
        changed.WriteFloat("TimeText0", "Y", 2.25);
        QVERIFY(changed.Save(Path("changed.mse")));

        TMseSettings read;
        QVERIFY(read.OpenFile(Path("changed.mse")));
        QVERIFY(read.SaveFile(Path("again.mse")));
        // Nothing lost, nothing added, nothing reverted to a default.
        QCOMPARE(Entries(TIniFile(Path("again.mse"))), Entries(changed));
        QCOMPARE(read.Curves[0].Color.Value, 0x00FF8040);
        QCOMPARE(read.TimeTexts[0].Y.Value, 2.25);
    }

    void partialTemplateStaysPartial() {
        const QString in =
            WriteFile("partial.mse", "[Axis Left]\r\nMax='50'\r\n[General]\r\nTitle='Only this'\r\n"
                                     "[Curve0]\r\nChannelName='T1'\r\nColor=255\r\n");
        TMseSettings mse;
        QVERIFY(mse.OpenFile(in));
        QCOMPARE(Entries(mse, false),
                 (QStringList{"[General]", "General/Title=Only this", "[Axis Left]", "Axis Left/Max=50",
                              "[Curve0]", "Curve0/ChannelName=T1", "Curve0/Color=255"}));
        QVERIFY(!mse.AxisLeft.Min.IsSet);
        QCOMPARE(mse.AxisLeft.Min.Value, 0.0); // the cleared default

        // Opening another template replaces the set marks of the general values.
        const QString other = WriteFile("other.mse", "[General]\r\nFoot='f'\r\n");
        QVERIFY(mse.OpenFile(other));
        QVERIFY(!mse.Title.IsSet);
        QVERIFY(!mse.AxisLeft.Max.IsSet);
        QVERIFY(mse.Foot.IsSet);
    }

    void listSectionsByPrefixInFileOrder_data() {
        QTest::addColumn<QByteArray>("file");
        QTest::addColumn<QStringList>("curves");
        QTest::addColumn<QStringList>("texts");
        QTest::addColumn<QStringList>("timeTexts");
        QTest::addColumn<QStringList>("calcs");
        QTest::newRow("file order, not number order")
            << QByteArray("[Curve7]\nTitle=a\n[Curve2]\nTitle=b\n") << QStringList{"a", "b"} << QStringList()
            << QStringList() << QStringList();
        QTest::newRow("prefix only") << QByteArray(
                                            "[Curves]\nTitle=a\n[Curve]\nTitle=b\n[CurveX9]\nTitle=c\n")
                                     << QStringList{"a", "b", "c"} << QStringList() << QStringList()
                                     << QStringList();
        QTest::newRow("prefix case matters")
            << QByteArray("[curve0]\nTitle=a\n[CURVE1]\nTitle=b\n[Curve2]\nTitle=c\n") << QStringList{"c"}
            << QStringList() << QStringList() << QStringList();
        QTest::newRow("time texts are no texts")
            << QByteArray("[TimeText0]\nText=t\n[Text0]\nText=x\n[Texts]\nText=y\n[Calculation]\nFormula=f\n")
            << QStringList() << QStringList{"x", "y"} << QStringList{"t"} << QStringList{"f"};
        QTest::newRow("interleaved") << QByteArray("[Text1]\nText=1\n[Curve0]\nTitle=c\n[Text0]\nText=0\n")
                                     << QStringList{"c"} << QStringList{"1", "0"} << QStringList()
                                     << QStringList();
    }
    void listSectionsByPrefixInFileOrder() {
        QFETCH(QByteArray, file);
        QFETCH(QStringList, curves);
        QFETCH(QStringList, texts);
        QFETCH(QStringList, timeTexts);
        QFETCH(QStringList, calcs);
        TMseSettings mse;
        QVERIFY(mse.OpenFile(WriteFile("lists.mse", file)));
        const auto values = [](const auto& list, auto field) {
            QStringList got;
            for (int i = 0; i < list.Count(); ++i)
                got << (list[i].*field).Value;
            return got;
        };
        QCOMPARE(values(mse.Curves, &TMseSettingsCurve::Title), curves);
        QCOMPARE(values(mse.Texts, &TMseText::Text), texts);
        QCOMPARE(values(mse.TimeTexts, &TMseTimeText::Text), timeTexts);
        QCOMPARE(values(mse.Calcs, &TMseCalc::Formula), calcs);
    }

    void listsComeBackRenumbered() {
        // Saved over a file that already has more sections of each kind and some of its own.
        const QString path =
            WriteFile("renumber.mse", "[Curve0]\nTitle=old0\n[Custom]\nX=1\n[Curve1]\nTitle=old1\n"
                                      "[Curve5]\nTitle=old5\n[TimeText3]\nText=keep\n"
                                      "[Text9]\nText=gone\n[curve0]\nTitle=stray\n");
        TMseSettings mse;
        QVERIFY(
            mse.OpenFile(WriteFile("src.mse", "[Curve7]\nTitle=a\n[Curve2]\nTitle=b\n[Text4]\nText=t\n")));
        mse.TimeTexts.Clear();
        QVERIFY(mse.SaveFile(path));
        const TIniFile ini(path);
        // Old list sections are gone, the stray "curve0" with them; numbering runs 0, 1, ...
        // in list order; sections of no list stay.
        QCOMPARE(ini.Sections(), (QStringList{"Custom", "Curve0", "Curve1", "Text0"}));
        QCOMPARE(ini.ReadString("Curve0", "Title"), QStringLiteral("a"));
        QCOMPARE(ini.ReadString("Curve1", "Title"), QStringLiteral("b"));
        QCOMPARE(ini.ReadString("Custom", "X"), QStringLiteral("1"));
        QVERIFY(!ini.SectionExists("TimeText3"));
    }

    void emptyEntriesKeepTheirPlace() {
        TMseSettings mse;
        mse.Texts.Add();
        mse.Texts.Add().Text.Set("second");
        QVERIFY(mse.SaveFile(Path("empty_entry.mse")));
        TMseSettings back;
        QVERIFY(back.OpenFile(Path("empty_entry.mse")));
        QCOMPARE(back.Texts.Count(), 2);
        QVERIFY(!back.Texts[0].Text.IsSet);
        QCOMPARE(back.Texts[1].Text.Value, QStringLiteral("second"));
    }

    void curvesMatchTheRecording_data() {
        QTest::addColumn<QByteArray>("file");
        QTest::addColumn<QList<int>>("colors");  // per recording curve after applying
        QTest::addColumn<QStringList>("titles"); // per recording curve after applying
        const QStringList own{"a", "b", "c", "d"};
        QTest::newRow("channel alone, title kept")
            << QByteArray("[Curve0]\nChannelName='T1'\nColor=7\nTitle='new'\n") << QList<int>{111, 7, 7, 111}
            << own;
        QTest::newRow("module and channel, title taken")
            << QByteArray("[Curve0]\nModulName='B'\nChannelName='T1'\nColor=8\nTitle='new'\n")
            << QList<int>{111, 8, 8, 111} << QStringList{"a", "new", "c", "d"};
        QTest::newRow("first matching section wins")
            << QByteArray("[Curve0]\nModulName='B'\nChannelName='T1'\nColor=1\n[Curve1]\nModulName='B'\n"
                          "ChannelName='T1'\nColor=2\n")
            << QList<int>{111, 1, 1, 111} << own;
        QTest::newRow("full match beats an earlier channel match")
            << QByteArray("[Curve0]\nModulName='X'\nChannelName='T1'\nColor=1\n[Curve1]\nModulName='C'\n"
                          "ChannelName='T1'\nColor=2\n")
            << QList<int>{111, 1, 2, 111} << own;
        QTest::newRow("names compared exactly")
            << QByteArray("[Curve0]\nModulName='b'\nChannelName='t1'\nColor=1\n")
            << QList<int>{111, 111, 111, 111} << own;
        QTest::newRow("curve without module is passed over")
            << QByteArray("[Curve0]\nChannelName='T9'\nColor=3\n") << QList<int>{111, 111, 111, 111} << own;
        QTest::newRow("garbage keeps the curve's value")
            << QByteArray("[Curve0]\nModulName='A'\nChannelName='T0'\nColor=red\nTitle='t'\n")
            << QList<int>{111, 111, 111, 111} << QStringList{"t", "b", "c", "d"};
        QTest::newRow("no curve sections")
            << QByteArray("[General]\nTitle='x'\n") << QList<int>{111, 111, 111, 111} << own;
    }
    void curvesMatchTheRecording() {
        QFETCH(QByteArray, file);
        QFETCH(QList<int>, colors);
        QFETCH(QStringList, titles);
        TMseSettings mse;
        AddRecordingCurve(mse, "A", "T0", "a");
        AddRecordingCurve(mse, "B", "T1", "b");
        AddRecordingCurve(mse, "C", "T1", "c");
        AddRecordingCurve(mse, "", "T9", "d");
        QVERIFY(mse.OpenFile(WriteFile("match.mse", file)));
        QCOMPARE(mse.Curves.Count(), 4);
        for (int i = 0; i < 4; ++i) {
            QCOMPARE(mse.Curves[i].Color.Value, colors[i]);
            QCOMPARE(mse.Curves[i].Title.Value, titles[i]);
            QCOMPARE(mse.Curves[i].Width.Value, 1); // not in any section: untouched
        }
        QCOMPARE(mse.Curves[1].sModulName.Value, QStringLiteral("B")); // names are never applied
    }

    void appliedSectionChangesOnlyItsKeys() {
        TMseSettings mse;
        AddRecordingCurve(mse, "M", "T1", "mine");
        mse.Curves[0].Axis.Set(2);
        mse.Curves[0].Format.Set("0.0");
        mse.Curves[0].LAlarm = 3;
        QVERIFY(mse.OpenCurveFile(WriteFile("one.mse", "[Curve0]\nChannelName='T1'\nColor=255\n")));
        const TMseSettingsCurve& c = mse.Curves[0];
        QCOMPARE(c.Color.Value, 255);
        QCOMPARE(c.Title.Value, QStringLiteral("mine"));
        QCOMPARE(c.Axis.Value, 2);
        QCOMPARE(c.Format.Value, QStringLiteral("0.0"));
        QCOMPARE(c.LAlarm, 3);
    }

    // A key present in the file is set, whatever its value. A value the viewer cannot use is
    // kept as read, so saving writes it back; text that is no number keeps the default.
    void presentKeysAreSet_data() {
        QTest::addColumn<QString>("section");
        QTest::addColumn<QString>("key");
        QTest::addColumn<QString>("raw");
        QTest::addColumn<QString>("saved");
        const auto row = [](const char* name, const char* sec, const char* key, const char* raw,
                            const char* saved) {
            QTest::newRow(name) << QString::fromUtf8(sec) << QString::fromUtf8(key) << QString::fromUtf8(raw)
                                << QString::fromUtf8(saved);
        };
        row("font size large", "Font Title", "Size", "120", "120");
        row("font size zero", "Font Axes", "Size", "0", "0");
        row("font size word", "Font Title", "Size", "big", "8");
        row("font style outside list", "Font Text", "Style", "4", "4");
        row("axis type outside list", "Axis Bottom", "XType", "3", "3");
        row("axis min word", "Axis Left", "Min", "'low'", "0");
        row("axis max nan", "Axis Right", "Max", "'NAN'", "100");
        row("axis grid word", "Axis Right", "Grid", "maybe", "0");
        row("cursor axis outside list", "Cursor1", "Axis", "2", "2");
        row("cursor width wide", "Cursor2", "Width", "30", "30");
        row("online rate zero", "General", "OnlineRate", "0", "0");
        row("margin negative", "Print", "MarginTop", "-5", "-5");
        row("landscape float", "Print", "Landscape", "'0.5'", "1");
        row("empty title", "General", "Title", "", "");
        row("curve width wide", "Curve0", "Width", "1000", "1000");
        row("curve type negative", "Curve0", "Type", "-1", "-1");
        row("curve colour float", "Curve0", "Color", "1.5", "0");
    }
    void presentKeysAreSet() {
        QFETCH(QString, section);
        QFETCH(QString, key);
        QFETCH(QString, raw);
        QFETCH(QString, saved);
        TIniFile ini;
        ini.WriteRaw(section, key, raw);
        ini.WriteString("General", "Foot", "read on"); // the rest of the file still counts
        TMseSettings mse;
        mse.Read(ini);
        const QStringList entries = Entries(mse, false).filter(QStringLiteral("="));
        QCOMPARE(entries.size(), 2);
        QVERIFY(entries.contains("General/Foot=read on"));
        QVERIFY2(entries.contains(section + '/' + key + '=' + saved), qPrintable(entries.join(' ')));
    }

    // Odd templates (junk, BOM, CR-only lines, duplicates, missing equals signs, long lines,
    // odd quotes, many sections): each loads in bounded size, and saving into it reads back the
    // same and saves to the same bytes again.
    void oddTemplates_data() {
        QTest::addColumn<QString>("path");
        const QDir dir(QStringLiteral(ZEB_FIXTURES "/templates"));
        const QStringList files = dir.entryList({QStringLiteral("*.mse")}, QDir::Files, QDir::Name);
        QVERIFY(files.size() >= 10);
        for (const QString& f : files)
            QTest::newRow(qPrintable(f)) << dir.filePath(f);
    }
    void oddTemplates() {
        QFETCH(QString, path);
        const QByteArray bytes = ReadBytes(path);
        const TIniFile ini(path);
        QVERIFY(ini.Sections().size() <= bytes.count('['));
        TMseSettings mse;
        QVERIFY(mse.OpenFile(path));
        QVERIFY(mse.Curves.Count() + mse.Calcs.Count() + mse.Texts.Count() + mse.TimeTexts.Count() <=
                ini.Sections().size());

        const QString copy = Path("inplace.mse");
        QFile::remove(copy);
        QVERIFY(QFile::copy(path, copy));
        QFile::setPermissions(copy, QFile::ReadOwner | QFile::WriteOwner);
        QVERIFY(mse.SaveFile(copy));
        const QByteArray saved = ReadBytes(copy);
        QVERIFY(saved.size() <= 3 * bytes.size() + 4096); // at worst re-encoded as UTF-8
        TMseSettings again;
        QVERIFY(again.OpenFile(copy));
        QCOMPARE(Entries(again, false), Entries(mse, false));
        QVERIFY(again.SaveFile(copy));
        QCOMPARE(ReadBytes(copy), saved);
    }

    // As the platform's reader: the first of repeated keys counts, a repeated section adds to the
    // first one, and key and section names ignore case.
    void repeatedKeysResolveToTheFirst() {
        TMseSettings mse;
        QVERIFY(mse.OpenFile(QStringLiteral(ZEB_FIXTURES "/templates/duplicate_keys.mse")));
        QCOMPARE(mse.Title.Value, QStringLiteral("first"));
        QCOMPARE(mse.Foot.Value, QStringLiteral("from the repeat"));
        QCOMPARE(mse.Curves.Count(), 1);
        QCOMPARE(mse.Curves[0].Color.Value, 1);

        // A key present but empty is set with the reading default; a missing one is not set.
        TIniFile ini;
        ini.LoadFromBytes("[TimeText0]\nX=\n");
        mse.Read(ini);
        QCOMPARE(mse.TimeTexts.Count(), 1);
        QVERIFY(mse.TimeTexts[0].X.IsSet && mse.TimeTexts[0].X.Value == 1.0);
        QVERIFY(!mse.TimeTexts[0].Y.IsSet);
        QVERIFY(!mse.OpenFile(Path("no_such.mse")));
    }

    // Very many sections read, match each curve to its own section and write back whole.
    void manySections() {
        QByteArray bytes;
        const int n = 50000;
        for (int i = 0; i < n; ++i)
            bytes += "[Curve" + QByteArray::number(i) + "]\nModulName='M'\nChannelName='C" +
                     QByteArray::number(i) + "'\nColor=" + QByteArray::number(i) + "\n";
        TIniFile ini;
        ini.LoadFromBytes(bytes);
        TMseSettings mse;
        mse.Read(ini);
        QCOMPARE(mse.Curves.Count(), n);
        mse.Read(ini); // now matched against those curves
        QCOMPARE(mse.Curves[n - 1].Color.Value, n - 1);
        mse.Write(ini, false);
        QCOMPARE(ini.Sections().size(), qsizetype(n));
    }

    void curveAndCalcFiles() {
        TMseSettings mse;
        mse.Title.Set("general");
        AddRecordingCurve(mse, "M", "C", "t");
        mse.Calcs.Add().Formula.Set("c0+1");
        mse.Texts.Add().Text.Set("note");
        QVERIFY(mse.SaveCurveFile(Path("curves.mse")));
        QVERIFY(mse.SaveCalcFile(Path("calcs.mse")));
        QCOMPARE(TIniFile(Path("curves.mse")).Sections(), QStringList{"Curve0"});
        QCOMPARE(TIniFile(Path("calcs.mse")).Sections(), QStringList{"Calc0"});

        // Into a full template: only its own sections change.
        const QString full =
            WriteFile("full.mse", "[General]\nTitle='mine'\n[Curve0]\nTitle=x\n[Curve1]\nTitle=y\n");
        QVERIFY(mse.SaveCurveFile(full));
        const TIniFile ini(full);
        QCOMPARE(ini.Sections(), (QStringList{"General", "Curve0"}));
        QCOMPARE(ini.ReadString("General", "Title"), QStringLiteral("mine"));

        TMseSettings other;
        other.Calcs.Add();
        other.Calcs.Add();
        QVERIFY(other.OpenCalcFile(Path("calcs.mse")));
        QCOMPARE(other.Calcs.Count(), 1);
        QCOMPARE(other.Calcs[0].Formula.Value, QStringLiteral("c0+1"));
        QVERIFY(other.OpenCurveFile(Path("curves.mse")));
        QCOMPARE(other.Curves.Count(), 1);
        QCOMPARE(other.Curves[0].sChannelName.Value, QStringLiteral("C"));
        QVERIFY(!other.Title.IsSet); // a curve file carries no general values
    }

    void copiesAreDeep() {
        TMseSettings a;
        AddRecordingCurve(a, "M", "C", "t");
        TMseSettings b = a;
        b.Curves[0].Title.Set("changed");
        b.Curves.Add();
        QCOMPARE(a.Curves.Count(), 1);
        QCOMPARE(a.Curves[0].Title.Value, QStringLiteral("t"));
    }

    // A template that cannot be written: the save answers false and the previous file stays
    // byte for byte. A file where the folder should be and a folder where the file should be stop
    // root too; the read-only cases only other users.
    void failedSaveKeepsThePreviousFile_data() {
        QTest::addColumn<QString>("obstacle");
        QTest::newRow("folder in place of the file") << "folder as file";
        QTest::newRow("file in place of the folder") << "file as folder";
        QTest::newRow("read-only folder") << "read-only folder";
        QTest::newRow("read-only file") << "read-only file";
        QTest::newRow("disk full") << "disk full";
    }
    void failedSaveKeepsThePreviousFile() {
        QFETCH(QString, obstacle);
        const QByteArray previous("[General]\r\nTitle='previous'\r\n");
        const QString folder = Path(obstacle);
        QVERIFY(QDir().mkpath(folder));
        QString path = folder + "/keep.mse";
        QVERIFY(WriteBytes(path, previous));
        TMseSettings mse;
        mse.Title.Set("new");
        if (obstacle == "folder as file") {
            path = folder;
        } else if (obstacle == "file as folder") {
            path += "/inner.mse";
        } else if (obstacle != "disk full") {
            const QString target = obstacle == "read-only folder" ? folder : path;
            QVERIFY(QFile::setPermissions(target, QFile::ReadOwner | QFile::ExeOwner));
            const bool writable = QFileInfo(target).isWritable();
            if (writable)
                QFile::setPermissions(target, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
            if (writable) QSKIP("permissions do not stop this user");
        }
        bool saved = true;
        if (obstacle == "disk full") {
#ifdef Q_OS_UNIX
            // The disk runs full while the new file is written.
            for (int i = 0; i < 200; ++i)
                mse.Texts.Add().Text.Set(QString(50, QLatin1Char('x')));
            struct rlimit old {};
            QVERIFY(getrlimit(RLIMIT_FSIZE, &old) == 0);
            const auto oldHandler = std::signal(SIGXFSZ, SIG_IGN);
            struct rlimit small = old;
            small.rlim_cur = 4096;
            QVERIFY(setrlimit(RLIMIT_FSIZE, &small) == 0);
            saved = mse.SaveFile(path);
            setrlimit(RLIMIT_FSIZE, &old);
            std::signal(SIGXFSZ, oldHandler);
#else
            QSKIP("no file size limit here");
#endif
        } else {
            saved = mse.SaveFile(path);
        }
        QFile::setPermissions(folder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        QVERIFY(!saved);
        QCOMPARE(ReadBytes(folder + "/keep.mse"), previous);
        QCOMPARE(QDir(folder).entryList(QDir::Files), QStringList{"keep.mse"}); // no temporary left
    }

    void isAlarm_data() {
        QTest::addColumn<int>("mode");
        QTest::addColumn<double>("l1");
        QTest::addColumn<double>("l2");
        QTest::addColumn<double>("value");
        QTest::addColumn<bool>("alarm");
        const double nan = std::numeric_limits<double>::quiet_NaN();
        QTest::newRow("0 never") << 0 << 0.0 << 10.0 << -100.0 << false;
        QTest::newRow("1 below") << 1 << 0.0 << 10.0 << -0.001 << true;
        QTest::newRow("1 on limit") << 1 << 0.0 << 10.0 << 0.0 << false;
        QTest::newRow("1 above") << 1 << 0.0 << 10.0 << 5.0 << false;
        QTest::newRow("2 above") << 2 << 0.0 << 10.0 << 0.001 << true;
        QTest::newRow("2 on limit") << 2 << 0.0 << 10.0 << 0.0 << false;
        QTest::newRow("2 ignores L2") << 2 << 0.0 << -10.0 << -5.0 << false;
        QTest::newRow("3 on lower") << 3 << 0.0 << 10.0 << 0.0 << false;
        QTest::newRow("3 on upper") << 3 << 0.0 << 10.0 << 10.0 << false;
        QTest::newRow("3 inside") << 3 << 0.0 << 10.0 << 5.0 << true;
        QTest::newRow("3 below") << 3 << 0.0 << 10.0 << -1.0 << false;
        QTest::newRow("3 above") << 3 << 0.0 << 10.0 << 11.0 << false;
        QTest::newRow("4 on lower") << 4 << 0.0 << 10.0 << 0.0 << false;
        QTest::newRow("4 on upper") << 4 << 0.0 << 10.0 << 10.0 << false;
        QTest::newRow("4 inside") << 4 << 0.0 << 10.0 << 5.0 << false;
        QTest::newRow("4 below") << 4 << 0.0 << 10.0 << -1.0 << true;
        QTest::newRow("4 above") << 4 << 0.0 << 10.0 << 11.0 << true;
        QTest::newRow("3 swapped limits") << 3 << 10.0 << 0.0 << 5.0 << false;
        QTest::newRow("4 not a number") << 4 << 0.0 << 10.0 << nan << false;
        QTest::newRow("5 never") << 5 << 0.0 << 10.0 << -1.0 << false;
        QTest::newRow("-1 never") << -1 << 0.0 << 10.0 << 11.0 << false;
    }
    void isAlarm() {
        QFETCH(int, mode);
        QFETCH(double, l1);
        QFETCH(double, l2);
        QFETCH(double, value);
        QFETCH(bool, alarm);
        TMseSettingsCurve c;
        c.LAlarm = mode;
        c.LValue1 = l1;
        c.LValue2 = l2;
        QCOMPARE(c.IsAlarm(value), alarm);
    }
};

QTEST_GUILESS_MAIN(TstMseSettings)
#include "tst_msesettings.moc"
