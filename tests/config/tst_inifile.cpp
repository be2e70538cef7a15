// The INI reader and writer: what other programs' files look like when read, what ours look
// like when written, and that a rewrite keeps everything it does not touch.

#include "config/IniFile.h"
#include "data/Formats.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <optional>

class TstIniFile : public QObject {
    Q_OBJECT

    static TIniFile FromText(const char* text) {
        TIniFile ini;
        ini.LoadFromBytes(QByteArray(text));
        return ini;
    }

private Q_SLOTS:
    void readsValues_data() {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("section");
        QTest::addColumn<QString>("key");
        QTest::addColumn<std::optional<QString>>("value"); // none: no such key

        const auto row = [](const char* tag, const char* bytes, const char* section, const char* key,
                            std::optional<QString> value) {
            QTest::newRow(tag) << QByteArray(bytes) << QString::fromLatin1(section)
                               << QString::fromLatin1(key) << value;
        };
        row("apostrophes stripped", "[S]\r\nA='My plot'\r\n", "S", "A", "My plot");
        row("double quotes stripped", "[S]\nA=\"x\"\n", "S", "A", "x");
        row("blanks then quotes", "[S]\nA =  ' padded '  \n", "S", "A", " padded ");
        row("unmatched quotes kept", "[S]\nA='x\"\n", "S", "A", "'x\"");
        row("inner apostrophe kept", "[S]\nA='Bob's'\n", "S", "A", "Bob's");
        row("lone quote kept", "[S]\nA='\n", "S", "A", "'");
        row("empty value", "[S]\nA=\n", "S", "A", "");
        row("equals in value", "[S]\nF=a=b\n", "S", "F", "a=b");
        row("key case ignored", "[S]\nTitle=x\n", "S", "TITLE", "x");
        row("section case ignored", "[Font Title]\nName=x\n", "font title", "name", "x");
        row("old Mac line ends", "[S]\rA=1\rB=2\r", "S", "B", "2");
        row("no final line end", "[S]\r\nA=last", "S", "A", "last");
        row("comment is no key", "[S]\n;A=1\n#B=2\n", "S", "A", std::nullopt);
        row("hash comment is no key", "[S]\n#B=2\n", "S", "B", std::nullopt);
        row("key before any section", "A=1\n[S]\n", "S", "A", std::nullopt);
        row("first of repeated keys", "[S]\nA=1\nA=2\n", "S", "A", "1");
        row("repeated section continues", "[S]\nA=1\n[T]\nX=0\n[s]\nB=2\n", "S", "B", "2");
        row("broken header is no section", "[S]\nA=1\n[T\nB=2\n", "S", "B", "2");
        row("blanks around header", "  [ S ]  \nA=1\n", "S", "A", "1");
        row("UTF-8 mark", "\xEF\xBB\xBF[S]\r\nA='\xC3\x84rger'\r\n", "S", "A",
            QString::fromUtf8("\xC3\x84rger"));
        row("Windows-1252", "[S]\r\nA='\x80 \xE4'\r\n", "S", "A", QString::fromUtf8("\xE2\x82\xAC \xC3\xA4"));
        row("UTF-8 without mark", "[S]\nA=\xC3\xA4\n", "S", "A", QString::fromUtf8("\xC3\xA4"));
        row("missing section", "[S]\nA=1\n", "T", "A", std::nullopt);
    }
    void readsValues() {
        QFETCH(QByteArray, bytes);
        QFETCH(QString, section);
        QFETCH(QString, key);
        QFETCH(std::optional<QString>, value);
        TIniFile ini;
        ini.LoadFromBytes(bytes);
        QCOMPARE(ini.Value(section, key), value);
    }

    void keepsFileOrder() {
        const TIniFile ini = FromText("[Zeta]\nb=1\na=2\n\n[Alpha]\nz=1\n[Curve7]\n[Curve2]\nX=1\n");
        QCOMPARE(ini.Sections(), (QStringList{"Zeta", "Alpha", "Curve7", "Curve2"}));
        QCOMPARE(ini.Keys("Zeta"), (QStringList{"b", "a"}));
        QVERIFY(ini.SectionExists("curve7"));
        QVERIFY(ini.Keys("Curve7").isEmpty());
    }

    void parsesIntegers_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("ok");
        QTest::addColumn<int>("value");
        QTest::newRow("plain") << "12" << true << 12;
        QTest::newRow("negative") << "-5" << true << -5;
        QTest::newRow("plus") << "+7" << true << 7;
        QTest::newRow("blanks") << " 3 " << true << 3;
        QTest::newRow("hex 0x") << "0x1F" << true << 31;
        QTest::newRow("hex dollar") << "$ff" << true << 255;
        QTest::newRow("hex all bits") << "0xFFFFFFFF" << true << -1;
        QTest::newRow("int max") << "2147483647" << true << 2147483647;
        QTest::newRow("int min") << "-2147483648" << true << int(-2147483647 - 1);
        QTest::newRow("too large") << "2147483648" << false << 0;
        QTest::newRow("hex too large") << "0x100000000" << false << 0;
        QTest::newRow("fraction") << "1.5" << false << 0;
        QTest::newRow("trailing garbage") << "12abc" << false << 0;
        QTest::newRow("word") << "abc" << false << 0;
        QTest::newRow("empty") << "" << false << 0;
        QTest::newRow("bare 0x") << "0x" << false << 0;
        QTest::newRow("signed hex") << "0x-5" << false << 0;
        QTest::newRow("double sign") << "--1" << false << 0;
        QTest::newRow("inner blank") << "1 2" << false << 0;
    }
    void parsesIntegers() {
        QFETCH(QString, text);
        QFETCH(bool, ok);
        QFETCH(int, value);
        const std::optional<int> got = TIniFile::ParseInteger(text);
        QCOMPARE(got.has_value(), ok);
        if (ok) QCOMPARE(*got, value);
    }

    void parsesFloatsAndBools_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("ok");
        QTest::addColumn<double>("value");
        QTest::newRow("point") << "1.5" << true << 1.5;
        QTest::newRow("comma") << "1,5" << true << 1.5;
        QTest::newRow("comma is never grouping") << "1,500" << true << 1.5;
        QTest::newRow("exponent") << "-2E3" << true << -2000.0;
        QTest::newRow("blanks") << " 7 " << true << 7.0;
        QTest::newRow("mixed separators") << "1.234,5" << false << 0.0;
        QTest::newRow("two commas") << "1,2,3" << false << 0.0;
        QTest::newRow("not a number") << "NAN" << false << 0.0;
        QTest::newRow("infinity") << "INF" << false << 0.0;
        QTest::newRow("overflow") << "1e400" << false << 0.0;
        QTest::newRow("word") << "abc" << false << 0.0;
        QTest::newRow("empty") << "" << false << 0.0;
    }
    void parsesFloatsAndBools() {
        QFETCH(QString, text);
        QFETCH(bool, ok);
        QFETCH(double, value);
        const std::optional<double> got = TIniFile::ParseFloat(text);
        QCOMPARE(got.has_value(), ok);
        if (ok) QCOMPARE(*got, value);
    }

    void parsesBooleans() {
        QCOMPARE(TIniFile::ParseBool("1"), std::optional<bool>(true));
        QCOMPARE(TIniFile::ParseBool("0"), std::optional<bool>(false));
        QCOMPARE(TIniFile::ParseBool("-1"), std::optional<bool>(true)); // any non-zero integer
        QCOMPARE(TIniFile::ParseBool("TRUE"), std::optional<bool>(true));
        QCOMPARE(TIniFile::ParseBool("false"), std::optional<bool>(false));
        QCOMPARE(TIniFile::ParseBool("yes"), std::nullopt);
        QCOMPARE(TIniFile::ParseBool(""), std::nullopt);
    }

    void writesKindsAsTheSuiteDoes() {
        zeb::SetFormats(0, 0, 0);
        TIniFile ini;
        ini.WriteString("General", "Title", "My plot");
        ini.WriteInteger("General", "OnlineRate", 1000);
        ini.WriteBool("General", "ShowName", true);
        ini.WriteBool("General", "DispLimits", false);
        ini.WriteFloat("Axis Left", "Min", -1.5);
        ini.WriteString("Axis Left", "Name", "two\r\nlines");
        QCOMPARE(ini.ToBytes(),
                 QByteArray("[General]\r\nTitle='My plot'\r\nOnlineRate=1000\r\nShowName=1\r\n"
                            "DispLimits=0\r\n\r\n[Axis Left]\r\nMin='-1.5'\r\nName='two lines'\r\n"));
        // Reading what was written gives the values back, quotes removed.
        TIniFile back;
        back.LoadFromBytes(ini.ToBytes());
        QCOMPARE(back.ReadString("General", "Title"), QStringLiteral("My plot"));
        QCOMPARE(back.ReadFloat("Axis Left", "Min", 0), -1.5);
        QCOMPARE(back.ReadBool("General", "ShowName", false), true);
    }

    void floatsFollowTheProgramsSeparator() {
        zeb::SetFormats(0, 0, 1); // decimal comma
        TIniFile ini;
        ini.WriteFloat("S", "V", 0.25);
        zeb::SetFormats(0, 0, 0);
        QCOMPARE(ini.ReadString("S", "V"), QStringLiteral("0,25"));
        QCOMPARE(ini.ReadFloat("S", "V", 0), 0.25);
    }

    void rewriteKeepsWhatItDoesNotTouch() {
        TIniFile ini = FromText("; made by hand\r\n[General]\r\nTitle='old'\r\n; note\r\nFoot='f'\r\n\r\n"
                                "[Unknown]\r\nX=1\r\n");
        ini.WriteString("general", "TITLE", "new");
        ini.WriteInteger("General", "DispTime", 2);
        ini.DeleteKey("General", "Foot");
        // Replaced values keep the file's spelling of the key; new keys follow the last key.
        QCOMPARE(ini.ToBytes(),
                 QByteArray("; made by hand\r\n[General]\r\nTitle='new'\r\n; note\r\nDispTime=2\r\n\r\n"
                            "[Unknown]\r\nX=1\r\n"));
        ini.EraseSection("GENERAL");
        QCOMPARE(ini.Sections(), QStringList{"Unknown"});
        ini.AddSection("Curve0");
        ini.AddSection("curve0");
        QCOMPARE(ini.Sections(), (QStringList{"Unknown", "Curve0"}));
    }

    void keepsTheEncodingItCanKeep() {
        const QString euro = QString::fromUtf8("\xE2\x82\xAC");
        const QString cjk = QString::fromUtf8("\xE6\xB8\xA9\xE5\xBA\xA6"); // not in Windows-1252

        TIniFile ansi;
        ansi.WriteString("S", "A", euro);
        QCOMPARE(ansi.ToBytes(), QByteArray("[S]\r\nA='\x80'\r\n"));

        ansi.WriteString("S", "B", cjk);
        const QByteArray widened = ansi.ToBytes();
        QVERIFY(widened.startsWith("\xEF\xBB\xBF"));
        TIniFile back;
        back.LoadFromBytes(widened);
        QCOMPARE(back.ReadString("S", "A"), euro);
        QCOMPARE(back.ReadString("S", "B"), cjk);

        TIniFile marked;
        marked.LoadFromBytes("\xEF\xBB\xBF[S]\r\nA=1\r\n");
        QVERIFY(marked.ToBytes().startsWith("\xEF\xBB\xBF"));

        // Windows-1252 text whose bytes alone would pass for UTF-8 once the byte that told them
        // apart is gone: it must read back as the same text.
        TIniFile mixed;
        mixed.LoadFromBytes("[S]\r\nA='\xC3\xBC'\r\n[T]\r\nB='\xFF'\r\n");
        QCOMPARE(mixed.ReadString("S", "A"), QString::fromUtf8("\xC3\x83\xC2\xBC"));
        mixed.EraseSection("T");
        TIniFile reread;
        reread.LoadFromBytes(mixed.ToBytes());
        QCOMPARE(reread.ReadString("S", "A"), mixed.ReadString("S", "A"));
    }

    void survivesGarbage() {
        QByteArray junk;
        for (int i = 0; i < 4096; ++i)
            junk.append(char((i * 7919 + 13) & 0xFF));
        junk.insert(100, QByteArray("\n[S]\n=\n[\n]\n[]\nA\n"));
        TIniFile ini;
        ini.LoadFromBytes(junk);
        // Whatever was understood, it writes and reads back to the same content.
        TIniFile again;
        again.LoadFromBytes(ini.ToBytes());
        QCOMPARE(again.Sections(), ini.Sections());
        QCOMPARE(again.ToBytes(), ini.ToBytes());
    }

    void loadAndSave() {
        QTemporaryDir dir;
        const QString path = dir.filePath("a.ini");
        TIniFile missing;
        QVERIFY(!missing.Load(path));
        QVERIFY(missing.Sections().isEmpty());

        TIniFile ini;
        ini.WriteString("S", "A", "x");
        QVERIFY(ini.Save(path));
        QVERIFY(TIniFile(path).ValueExists("S", "A"));
        QVERIFY(!ini.Save(dir.filePath("no/such/folder/a.ini")));
        QVERIFY(!ini.Save(dir.path())); // a folder is no file
    }
};

QTEST_GUILESS_MAIN(TstIniFile)
#include "tst_inifile.moc"
