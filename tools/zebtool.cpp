// zebtool: command-line companion for recordings. `zebtool --help` gives the usage and exit codes.
//   zebtool gen [options] OUT.zeb     write a realistic recording
//   zebtool blocks FILE               list the blocks and where the walk ended
//   zebtool dump [--answer N | --no-ask] [--variant CODE] FILE
//                                     everything the loader reads, as JSON (gaps null,
//                                     non-finite values "NaN", "Infinity", "-Infinity")
//   zebtool info FILE                 a short summary
//   zebtool analyse [--from S] [--to S] FILE
//                                     each curve's statistics, limit times and integral
//   zebtool fft --curve I --from S --to S FILE
//                                     the FFT view's spectrum of a band of one curve
//   zebtool summary [--from S] [--to S] [--template T.mse] FILE...
//                                     the report's figures of every curve of many recordings

#include "analysis/Analysis.h"
#include "analysis/Figures.h"
#include "analysis/Spectrum.h"
#include "config/Language.h"
#include "config/Texts.h"
#include "config/ZebReg.h"
#include "data/DataFile.h"
#include "data/Formats.h"
#include "data/RecordingWalk.h"
#include "RecordingGenerator.h"
#include "store/DataBase.h"
#include "store/FileThread.h"
#include "store/Summary.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QEventLoop>
#include <QFileInfo>
#include <QStringList>
#include <QTextStream>

#include <charconv>
#include <cmath>
#include <cstdio>
#include <optional>
#include <unistd.h>
#include <utility>
#include <vector>

namespace {

QTextStream& Out() {
    static QTextStream s(stdout);
    return s;
}
QTextStream& Err() {
    static QTextStream s(stderr);
    return s;
}

// The program's settings and language, as the suite's other programs load them; once.
void StartLanguage() {
    static bool started = false;
    if (std::exchange(started, true)) return;
    ZebSettingsRoot();
    LoadZebSettings(QStringLiteral("zebtool.exe"));
    const TZebSettings& settings = ZebSettings();
    zeb::ApplyStartupLanguage(settings.Language, settings.LocDate, settings.LocDecimalSeparator);
}

// The usage, in the user's language as the suite's other programs give it: on stdout with exit
// code 0 when asked for, else on stderr with 2.
int Usage(bool asked = false) {
    StartLanguage();
    QString text = zeb::Txt(zeb::TTextId::ToolUsage);
    text.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    QTextStream& s = asked ? Out() : Err();
    s << text << "\n";
    s.flush();
    return asked ? 0 : 2;
}

// A call with an argument that has no place in it: the argument named, then the usage.
int BadCall(const QString& arg) {
    StartLanguage();
    Err() << zeb::TxtFmt(zeb::TTextId::CliBadArgument, {arg}) << "\n";
    return Usage();
}

// Shortest text that reads back to the same double. JSON has no numbers for NaN and the
// infinities, so those become the strings "NaN", "Infinity" and "-Infinity".
QString Num(double v) {
    if (std::isnan(v)) return QStringLiteral("\"NaN\"");
    if (std::isinf(v)) return v > 0 ? QStringLiteral("\"Infinity\"") : QStringLiteral("\"-Infinity\"");
    char buf[64];
    const auto r = std::to_chars(buf, buf + sizeof buf, v);
    return QString::fromLatin1(buf, int(r.ptr - buf));
}

QString JsonString(const QString& s) {
    QString out = QStringLiteral("\"");
    for (QChar c : s) {
        switch (c.unicode()) {
        case '"': out += QStringLiteral("\\\""); break;
        case '\\': out += QStringLiteral("\\\\"); break;
        case '\n': out += QStringLiteral("\\n"); break;
        case '\r': out += QStringLiteral("\\r"); break;
        case '\t': out += QStringLiteral("\\t"); break;
        default:
            if (c.unicode() < 0x20) out += QStringLiteral("\\u%1").arg(c.unicode(), 4, 16, QLatin1Char('0'));
            else out += c;
        }
    }
    return out + QLatin1Char('"');
}

QString OrNull(std::optional<double> v) {
    return v ? Num(*v) : QStringLiteral("null");
}

// ------------------------------------------------------------------ gen

int Gen(QStringList args) {
    TGenOptions o;
    bool quiet = false;
    qint64 values = -1;
    QString out;
    auto next = [&](int& i) -> QString {
        if (i + 1 >= args.size()) throw std::invalid_argument(args[i].toStdString() + " needs a value");
        return args[++i];
    };
    try {
        for (int i = 0; i < args.size(); ++i) {
            const QString& a = args[i];
            bool ok = true;
            if (a == QLatin1String("--seed")) o.seed = next(i).toULongLong(&ok);
            else if (a == QLatin1String("--channels")) o.channels = next(i).toInt(&ok);
            else if (a == QLatin1String("--records")) o.records = next(i).toLongLong(&ok);
            else if (a == QLatin1String("--values")) values = next(i).toLongLong(&ok);
            else if (a == QLatin1String("--interval")) o.intervalSeconds = next(i).toDouble(&ok);
            else if (a == QLatin1String("--missing")) o.missingRate = next(i).toDouble(&ok);
            else if (a == QLatin1String("--gap-rate")) o.gapRate = next(i).toDouble(&ok);
            else if (a == QLatin1String("--gaps")) o.gapRate = 0.0005;
            else if (a == QLatin1String("--odd-rate")) o.oddRate = next(i).toDouble(&ok);
            else if (a == QLatin1String("--jitter")) o.jitter = next(i).toDouble(&ok);
            else if (a == QLatin1String("--late")) o.lateRecords = next(i).toInt(&ok);
            else if (a == QLatin1String("--no-limits")) o.limits = false;
            else if (a == QLatin1String("--zeb-name")) o.zebName = next(i);
            else if (a == QLatin1String("--logger")) o.loggerName = next(i);
            else if (a == QLatin1String("--quiet")) quiet = true;
            else if (a == QLatin1String("--start")) {
                const QString s = next(i);
                QDateTime dt = QDateTime::fromString(s, Qt::ISODate);
                if (!dt.isValid()) dt = QDateTime(QDate::fromString(s, Qt::ISODate), QTime(0, 0));
                dt.setTimeSpec(Qt::UTC);
                ok = dt.isValid();
                o.startDays = double(QDateTime(QDate(2000, 1, 1), QTime(0, 0), Qt::UTC).msecsTo(dt)) / 86400000.0;
            } else if (a.startsWith(QLatin1String("--"))) {
                return BadCall(a);
            } else if (out.isEmpty()) out = a;
            else return BadCall(a);
            if (!ok) {
                Err() << "zebtool gen: bad value for " << a << "\n";
                return 2;
            }
        }
    } catch (const std::invalid_argument& e) {
        Err() << "zebtool gen: " << e.what() << "\n";
        return 2;
    }
    if (out.isEmpty()) return Usage();
    if (o.channels < 1 || o.channels > 16000 || o.records < 0 || o.intervalSeconds <= 0 || o.missingRate < 0 ||
        o.gapRate < 0 || o.missingRate + o.gapRate > 1 || o.oddRate < 0 || o.oddRate > 1 || !(o.jitter >= 0) ||
        o.jitter > 1 || o.lateRecords < 0) {
        Err() << "zebtool gen: options out of range\n";
        return 2;
    }
    if (values >= 0) o.records = (values + o.channels - 1) / o.channels;

    QString error;
    int lastPercent = -1;
    const bool ok = WriteRecording(out, o, &error, [&](double share) {
        const int p = int(share * 100);
        if (!quiet && isatty(2) && p / 10 != lastPercent / 10) {
            lastPercent = p;
            Err() << "\rwriting " << p << " %";
            Err().flush();
        }
    });
    if (!quiet && lastPercent >= 0) Err() << "\r";
    if (!ok) {
        Err() << "zebtool gen: cannot write " << out << ": " << error << "\n";
        return 1;
    }
    if (!quiet)
        Out() << "wrote " << out << ": " << o.channels << " channels, " << o.records << " records\n";
    return 0;
}

// ------------------------------------------------------------------ blocks

class TBlockLister : public TRecordingReceiver {
public:
    void OnBlock(int counter, quint16 id, int length) override {
        Out() << QStringLiteral("%1 %2  %3 %4\n")
                     .arg(counter, 6)
                     .arg(id, 5)
                     .arg(ZebBlock::Name(id), -22)
                     .arg(length, 6);
    }
};

int Blocks(const QString& path, int variant) {
    QString error;
    auto file = TDataFile::CreateLoad(path, &error);
    if (!file) {
        Err() << "zebtool blocks: cannot open " << path << ": " << error << "\n";
        return 1;
    }
    Out() << QStringLiteral("%1 %2  %3 %4\n").arg(QStringLiteral("block"), 6).arg(QStringLiteral("id"), 5)
                 .arg(QStringLiteral("kind"), -22).arg(QStringLiteral("length"), 6);
    TBlockLister lister;
    TRecordingWalk walk(*file, lister, variant);
    const TRecordingWalk::TEnd end = walk.Run();
    if (end == TRecordingWalk::TEnd::BadHeader) {
        // Say what stands where the header should be.
        auto raw = TDataFile::CreateLoad(path);
        try {
            if (raw && raw->ReadBlock()) {
                QString magic;
                try {
                    magic = raw->ReadString();
                } catch (const TDataFileError&) {
                }
                Out() << "first block: id " << raw->BlockId() << ", " << raw->BlockSize()
                      << " bytes (a header is id 0, 15 bytes), text " << JsonString(magic) << "\n";
            } else {
                Out() << "no block could be read\n";
            }
        } catch (const TDataFileError& e) {
            Out() << "no block could be read: " << e.what() << "\n";
        }
        Out() << "walk ended before block 1: " << TRecordingWalk::EndText(end) << "\n";
        return 1;
    }
    Out() << "header: ok\n";
    Out() << "walk ended after block " << walk.BlockCounter() << ": " << TRecordingWalk::EndText(end);
    if (!walk.ErrorText().isEmpty()) Out() << " (" << walk.ErrorText() << ")";
    Out() << "\n"
          << walk.CurveCount() << " curves, " << walk.ValueCount() << " measured values\n";
    return end == TRecordingWalk::TEnd::Damaged ? 1 : 0;
}

// ------------------------------------------------------------------ dump / info

// Loads through the loader thread and the store, exactly as the viewer does.
struct TLoad {
    TLoadReport status = TLoadReport::ResultError;
    qint64 values = 0;
};

TLoad Load(TDataBase& db, const QString& path, int variant, bool ask, int answer) {
    TLoad res;
    db.AddFile(path);
    QEventLoop loop;
    TAskProc askProc;
    // The answer's number as the dialog's order: stop, show, continue, previewer.
    if (ask) askProc = [answer](TBigDataAnswer& r) { r = TBigDataAnswer(answer); };
    TFileThread thread(
        &db, path,
        [&](TLoadReport report, const QString& text) {
            if (report == TLoadReport::Defect) Err() << text << "\n";
            if (report == TLoadReport::ValueCount) res.values = text.toLongLong();
            if (int(report) < 0) {
                res.status = report;
                loop.quit();
            }
        },
        askProc, variant);
    loop.exec();
    thread.wait();
    if (res.values == 0) res.values = thread.ValueCount();
    return res;
}

// Parses "[--answer N | --no-ask] [--variant CODE] FILE" and loads FILE into db.
// Answers the exit code to give up with, or -1 when db holds the file.
int LoadFromArgs(const char* cmd, const QStringList& args, TDataBase& db, TLoad& res, QString& path) {
    int variant = 0, answer = 2;
    bool ask = true;
    for (int i = 0; i < args.size(); ++i) {
        if (args[i] == QLatin1String("--no-ask")) ask = false;
        else if (args[i] == QLatin1String("--answer") && i + 1 < args.size()) answer = args[++i].toInt();
        else if (args[i] == QLatin1String("--variant") && i + 1 < args.size()) variant = args[++i].toInt();
        else if (path.isEmpty() && !args[i].startsWith(QLatin1String("--"))) path = args[i];
        else return BadCall(args[i]);
    }
    if (path.isEmpty()) return Usage();
    if (!QFileInfo::exists(path)) {
        Err() << "zebtool " << cmd << ": no such file: " << path << "\n";
        return 1;
    }
    res = Load(db, path, variant, ask, answer);
    return -1;
}

int Dump(const QStringList& args) {
    TDataBase db;
    TLoad res;
    QString path;
    if (const int rc = LoadFromArgs("dump", args, db, res, path); rc >= 0) return rc;

    QTextStream& o = Out();
    o << "{\"status\": " << int(res.status) << ", \"creator\": " << JsonString(db.Creator())
      << ", \"start_time\": " << Num(db.StartTime()) << ", \"zeb_name\": " << JsonString(db.ZebName())
      << ", \"logger_name\": " << JsonString(db.LoggerName()) << ", \"mode\": " << db.Mode()
      << ", \"values\": " << res.values << ", \"curves\": [";
    for (int c = 0; c < db.Curve_Count(); ++c) {
        const TMseSettingsCurve& cu = db.Settings().Curves[c];
        const TCurveData& d = db.Data(c);
        o << (c ? ", " : "") << "{\"module\": " << JsonString(cu.sModulName.Value)
          << ", \"channel\": " << JsonString(cu.sChannelName.Value) << ", \"unit\": " << JsonString(cu.sUnit)
          << ", \"logger\": " << JsonString(cu.sLoggername) << ", \"alarm\": " << cu.LAlarm
          << ", \"record\": " << cu.LRecord << ", \"value1\": " << Num(cu.LValue1) << ", \"value2\": " << Num(cu.LValue2)
          << ", \"points\": [";
        for (qint64 i = 0; i < d.Count(); ++i) {
            o << (i ? ", [" : "[") << Num(d.Time(i)) << ", " << (d.IsGap(i) ? QStringLiteral("null") : Num(d.Value(i)))
              << "]";
        }
        o << "]}";
    }
    o << "]}\n";
    return 0;
}

int Info(const QStringList& args) {
    TDataBase db;
    TLoad res;
    QString path;
    if (const int rc = LoadFromArgs("info", args, db, res, path); rc >= 0) return rc;
    QTextStream& o = Out();
    o << "file:        " << path << "\n"
      << "status:      " << int(res.status) << "\n"
      << "creator:     " << db.Creator() << "\n"
      << "start time:  " << zeb::FormatTime(zeb::TTimeKind::DateTime, db.StartTime() * zeb::kSecondsPerDay) << "\n"
      << "ZEB name:    " << db.ZebName() << "\n"
      << "logger name: " << db.LoggerName() << "\n"
      << "values:      " << res.values << "\n"
      << "curves:      " << db.Curve_Count() << "\n";
    for (int c = 0; c < db.Curve_Count(); ++c) {
        const TMseSettingsCurve& cu = db.Settings().Curves[c];
        const TCurveData& d = db.Data(c);
        o << QStringLiteral("  %1 %2 / %3 [%4]: %5 points")
                 .arg(c)
                 .arg(cu.sModulName.Value, cu.sChannelName.Value, cu.sUnit)
                 .arg(d.Count());
        if (!d.IsEmpty()) o << ", " << zeb::FormatTime(zeb::TTimeKind::DateTimeMs, d.FirstTime()) << " .. " << zeb::FormatTime(zeb::TTimeKind::DateTimeMs, d.LastTime());
        o << "\n";
    }
    return 0;
}

// ------------------------------------------------------------------ analyse

// The figures of the calculation view, the limit view and the integration dialog, by the
// same functions, over the points with from <= time <= to.
int Analyse(QStringList args) {
    std::optional<double> from, to;
    for (int i = 0; i + 1 < args.size();) {
        if (args[i] != QLatin1String("--from") && args[i] != QLatin1String("--to")) {
            ++i;
            continue;
        }
        bool ok = false;
        const double v = args[i + 1].toDouble(&ok);
        if (!ok || !std::isfinite(v)) {
            Err() << "zebtool analyse: bad value for " << args[i] << "\n";
            return 2;
        }
        (args[i] == QLatin1String("--from") ? from : to) = v;
        args.remove(i, 2);
    }
    TDataBase db;
    TLoad res;
    QString path;
    if (const int rc = LoadFromArgs("analyse", args, db, res, path); rc >= 0) return rc;
    double first = 0.0, last = 0.0;
    db.GetXMinXMax(first, last, false);
    double x0 = from.value_or(first), x1 = to.value_or(last);
    // Bounds given the wrong way round mean the same range, as in the integration dialog.
    if (x0 > x1) std::swap(x0, x1);
    auto orNull = [](bool has, double v) { return has ? Num(v) : QStringLiteral("null"); };

    QTextStream& o = Out();
    o << "{\"status\": " << int(res.status) << ", \"from\": " << Num(x0) << ", \"to\": " << Num(x1) << ", \"curves\": [";
    for (int c = 0; c < db.Curve_Count(); ++c) {
        const auto summary = db.Summary(c);
        TFigureOptions want;
        want.Integral = true;
        const TCurveFigures f =
            CurveFigures(db.Data(c), summary.get(), LimitRuleOf(db.Settings().Curves[c]), x0, x1, want);
        const TRangeStats& st = f.Stats;
        const bool limited = f.HasLimits();
        o << (c ? ", " : "") << "{\"index\": " << c << ", \"name\": " << JsonString(db.Curve_NameGet(c))
          << ", \"unit\": " << JsonString(db.Curve_UnitGet(c)) << ", \"points\": " << st.Count
          << ", \"min\": " << orNull(st.Count > 0, st.Min) << ", \"max\": " << orNull(st.Count > 0, st.Max)
          << ", \"average\": " << orNull(st.Count > 0, st.Average)
          << ", \"stddev\": " << orNull(st.Count > 1, st.StdDev)
          << ", \"limit_mode\": " << (limited ? QString::number(f.Limits.Mode) : QStringLiteral("null"))
          << ", \"limit_out_s\": " << orNull(limited && f.Times.Valid, f.Times.Out)
          << ", \"limit_in_s\": " << orNull(limited && f.Times.Valid, f.Times.In)
          << ", \"integral\": " << OrNull(f.Integral) << "}";
    }
    o << "]}\n";
    return 0;
}

// ------------------------------------------------------------------ fft

// The FFT view's computation on a band of one curve.
int Fft(QStringList args) {
    std::optional<double> from, to;
    std::optional<int> curve;
    for (int i = 0; i + 1 < args.size();) {
        const QString& a = args[i];
        if (a != QLatin1String("--from") && a != QLatin1String("--to") && a != QLatin1String("--curve")) {
            ++i;
            continue;
        }
        bool ok = false;
        if (a == QLatin1String("--curve")) {
            curve = args[i + 1].toInt(&ok);
        } else {
            const double v = args[i + 1].toDouble(&ok);
            ok = ok && std::isfinite(v);
            (a == QLatin1String("--from") ? from : to) = v;
        }
        if (!ok) {
            Err() << "zebtool fft: bad value for " << a << "\n";
            return 2;
        }
        args.remove(i, 2);
    }
    if (!curve || !from || !to) return Usage();
    TDataBase db;
    TLoad res;
    QString path;
    if (const int rc = LoadFromArgs("fft", args, db, res, path); rc >= 0) return rc;
    if (!db.Curve_IsValid(*curve)) {
        Err() << "zebtool fft: no curve " << *curve << " (the recording has " << db.Curve_Count() << ")\n";
        return 2;
    }
    const TCurveData& d = db.Data(*curve);
    TFastFourier fft(QStringLiteral("FFT1"));
    const TBandSpectrum s = BandSpectrum(d, 0, d.Count() - 1, *from, *to, fft);
    QTextStream& o = Out();
    if (s.N == 0) {
        o << "{\"n\": 0}\n";
        return 0;
    }
    o << "{\"n\": " << s.N << ", \"dt\": " << Num(s.Dt) << ", \"first\": " << s.Points.First
      << ", \"last\": " << s.Points.Last << ", \"lines\": [";
    for (size_t k = 0; k < s.Frequency.size(); ++k)
        o << (k ? ", [" : "[") << Num(s.Frequency[k]) << ", " << Num(s.Magnitude[k]) << "]";
    o << "]}\n";
    return 0;
}

// ------------------------------------------------------------------ summary

// The summary's figures of every curve of every recording, as a JSON array; a file that
// cannot be read gets one object with its status. Exit code 1 when any file was not read
// completely; the output is written all the same.
int Summary(QStringList args) {
    TSummaryOptions options;
    options.ActivationEnergy = kMktActivationEnergy;
    QStringList files;
    for (int i = 0; i < args.size(); ++i) {
        const QString& a = args[i];
        const bool valued = a == QLatin1String("--from") || a == QLatin1String("--to") ||
                            a == QLatin1String("--template") || a == QLatin1String("--variant") ||
                            a == QLatin1String("--activation-energy");
        if (!valued) {
            if (a.startsWith(QLatin1String("--"))) return BadCall(a);
            files << a;
            continue;
        }
        if (i + 1 >= args.size()) return BadCall(a);
        const QString v = args[++i];
        if (a == QLatin1String("--template")) {
            if (!QFileInfo(v).isFile()) {
                Err() << "zebtool summary: cannot read the template " << v << "\n";
                return 2;
            }
            options.Template = v;
            continue;
        }
        bool ok = false;
        const double number = v.toDouble(&ok);
        if (!ok || !std::isfinite(number)) return BadCall(a + QLatin1Char(' ') + v);
        if (a == QLatin1String("--from")) options.From = number;
        else if (a == QLatin1String("--to")) options.To = number;
        else if (a == QLatin1String("--variant")) options.Variant = int(number);
        else if (number > 0.0) options.ActivationEnergy = number;
        else return BadCall(a + QLatin1Char(' ') + v);
    }
    if (files.isEmpty()) return Usage();
    if (options.From && options.To && *options.From > *options.To) std::swap(*options.From, *options.To);

    const std::vector<TSummaryRow> rows = TSummaryRun{}.Run(files, options);
    auto orNull = [](double v) { return std::isnan(v) ? QStringLiteral("null") : Num(v); };
    QTextStream& o = Out();
    o << "[";
    bool complete = true;
    for (size_t k = 0; k < rows.size(); ++k) {
        const TSummaryRow& r = rows[k];
        complete = complete && r.Status == TSummaryStatus::Ok;
        o << (k ? ",\n " : "\n ") << "{\"file\": " << JsonString(r.File)
          << ", \"status\": " << JsonString(SummaryStatusName(r.Status));
        if (!r.HasFigures()) {
            o << ", \"index\": null}";
            continue;
        }
        o << ", \"index\": " << r.Index << ", \"name\": " << JsonString(r.Name) << ", \"unit\": " << JsonString(r.Unit)
          << ", \"logger\": " << JsonString(r.Logger) << ", \"points\": " << r.Points
          << ", \"infinite\": " << r.Infinite << ", \"first\": " << orNull(r.First) << ", \"last\": " << orNull(r.Last)
          << ", \"min\": " << orNull(r.Min) << ", \"min_time\": " << orNull(r.MinTime) << ", \"max\": " << orNull(r.Max)
          << ", \"max_time\": " << orNull(r.MaxTime) << ", \"average\": " << orNull(r.Average)
          << ", \"mkt\": " << orNull(r.Mkt) << ", \"limit_mode\": " << (r.LimitMode ? QString::number(r.LimitMode) : QStringLiteral("null"))
          << ", \"limit_out_s\": " << (r.LimitMode ? orNull(r.LimitOut) : QStringLiteral("null"))
          << ", \"violations\": " << (r.LimitMode ? QString::number(r.Violations) : QStringLiteral("null"))
          << ", \"first_violation\": " << orNull(r.FirstViolation)
          << ", \"verdict\": " << JsonString(SummaryVerdictName(r.Verdict)) << "}";
    }
    o << "\n]\n";
    return complete ? 0 : 1;
}

} // namespace

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    QStringList args = app.arguments().mid(1);
    if (args.isEmpty()) return Usage();
    const QString cmd = args.takeFirst();
    if (cmd == QLatin1String("--help") || cmd == QLatin1String("-h")) return Usage(true);
    if (cmd == QLatin1String("--version")) {
        Out() << "zebtool " << ZEB_VERSION << "\n";
        return 0;
    }
    if (cmd == QLatin1String("gen")) return Gen(args);
    if (cmd == QLatin1String("blocks")) {
        int variant = 0;
        if (args.size() == 3 && args[0] == QLatin1String("--variant")) {
            variant = args[1].toInt();
            args = args.mid(2);
        }
        if (args.size() != 1) return Usage();
        return Blocks(args[0], variant);
    }
    if (cmd == QLatin1String("dump")) return Dump(args);
    if (cmd == QLatin1String("info")) return Info(args);
    if (cmd == QLatin1String("analyse")) return Analyse(args);
    if (cmd == QLatin1String("fft")) return Fft(args);
    if (cmd == QLatin1String("summary")) return Summary(args);
    return BadCall(cmd);
}
