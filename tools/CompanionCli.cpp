#include "CompanionCli.h"

#include "config/Language.h"
#include "config/Texts.h"
#include "config/ZebReg.h"
#include "data/Formats.h"

#include <QFileInfo>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>

using zeb::TTextId;

namespace companion {

void StartProgram(const QString& settingsName) {
    ZebSettingsRoot();
    LoadZebSettings(settingsName);
    const TZebSettings& s = ZebSettings();
    zeb::ApplyStartupLanguage(s.Language, s.LocDate, s.LocDecimalSeparator);
}

namespace {

void Print(QString text, FILE* stream) {
    text.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    std::fputs(text.toLocal8Bit().constData(), stream);
    std::fputc('\n', stream);
    std::fflush(stream);
}

bool IsHelp(const QString& a) {
    return a == QLatin1String("--help") || a == QLatin1String("-h") || a == QLatin1String("/?");
}

TParsed Bad(TTextId id, std::initializer_list<QString> args) {
    TParsed p;
    p.Kind = TParsed::TKind::Bad;
    p.Message = zeb::TxtFmt(id, args);
    return p;
}

// A lone --help or --version; nullopt when the arguments are something else.
std::optional<TParsed> Special(const QStringList& args) {
    if (args.size() != 1) return std::nullopt;
    TParsed p;
    if (IsHelp(args[0])) p.Kind = TParsed::TKind::Help;
    else if (args[0] == QLatin1String("--version")) p.Kind = TParsed::TKind::Version;
    else return std::nullopt;
    return p;
}

} // namespace

void PrintError(const QString& text) { Print(text, stderr); }
void PrintOut(const QString& text) { Print(text, stdout); }

std::optional<double> ParseSeconds(const QString& text) {
    const QByteArray b = text.toLatin1();
    if (b.isEmpty()) return std::nullopt;
    const char* first = b.constData();
    const char* last = first + b.size();
    if (*first == '+') ++first; // from_chars takes no plus sign
    double v = 0;
    const auto r = std::from_chars(first, last, v, std::chars_format::general);
    if (r.ec != std::errc() || r.ptr != last || !std::isfinite(v)) return std::nullopt;
    return v;
}

std::optional<int> ParseIndex(const QString& text) {
    if (text.isEmpty() || text.size() > 5) return std::nullopt;
    int v = 0;
    for (QChar c : text) {
        if (c < QLatin1Char('0') || c > QLatin1Char('9')) return std::nullopt;
        v = v * 10 + (c.unicode() - '0');
    }
    if (v > 65535) return std::nullopt;
    return v;
}

TParsed ParseCutterArgs(const QStringList& args) {
    const QString program = QString::fromLatin1(kCutterName);
    if (auto special = Special(args)) return *special;
    if (args.size() != 6 && args.size() != 7) return Bad(TTextId::CmpArgumentCount, {program});
    auto bad = [&](const QString& arg) { return Bad(TTextId::CmpBadArgument, {arg, program}); };

    TParsed p;
    TCutRequest& r = p.Request;
    r.Source = args[0];
    r.Target = args[1];
    if (r.Source.isEmpty()) return bad(r.Source);
    if (r.Target.isEmpty()) return bad(r.Target);
    const auto start = ParseSeconds(args[2]);
    if (!start) return bad(args[2]);
    const auto end = ParseSeconds(args[3]);
    if (!end) return bad(args[3]);
    if (*start > *end) return Bad(TTextId::CmpWindowReversed, {args[2], args[3]});
    r.Start = *start;
    r.End = *end;
    const auto n = ParseIndex(args[4]);
    if (!n || *n == 0) return bad(args[4]);
    const QStringList items = args[5].split(QLatin1Char(','));
    for (const QString& item : items) {
        const auto index = ParseIndex(item);
        if (!index) return bad(args[5]);
        r.Channels.push_back(*index);
    }
    std::vector<int> sorted = r.Channels;
    std::sort(sorted.begin(), sorted.end());
    if (std::adjacent_find(sorted.begin(), sorted.end()) != sorted.end()) return bad(args[5]);
    if (int(items.size()) != *n) return Bad(TTextId::CmpChannelCount, {args[4], QString::number(items.size())});
    if (args.size() == 7) {
        const QString kind = args[6].toLower();
        if (kind == QLatin1String("csv")) r.Csv = true;
        else if (kind == QLatin1String("mat")) r.Arrays = TArrayKind::Matlab;
        else if (kind == QLatin1String("h5")) r.Arrays = TArrayKind::Hdf5;
        else return bad(args[6]);
    }
    p.Kind = TParsed::TKind::Run;
    return p;
}

TParsed ParseConverterArgs(const QStringList& args) {
    const QString program = QString::fromLatin1(kConverterName);
    if (auto special = Special(args)) return *special;
    if (args.size() != 2) return Bad(TTextId::CmpArgumentCount, {program});
    TParsed p;
    p.Request.Source = args[0];
    p.Request.Target = args[1];
    for (const QString& a : args)
        if (a.isEmpty()) return Bad(TTextId::CmpBadArgument, {a, program});
    p.Request.Csv = true;
    p.Kind = TParsed::TKind::Run;
    return p;
}

int Run(const TParsed& parsed, const char* program, const QString& usage) {
    switch (parsed.Kind) {
    case TParsed::TKind::Help: PrintOut(usage); return 0;
    case TParsed::TKind::Version:
        PrintOut(QString::fromLatin1(program) + QLatin1Char(' ') + QStringLiteral(ZEB_VERSION));
        return 0;
    case TParsed::TKind::Bad: PrintError(parsed.Message); return int(TCutResult::BadArgument);
    case TParsed::TKind::Run: break;
    }
    TCutRequest request = parsed.Request;
    if (request.Csv) request.Format = TCsvFormat::FromSettings(ZebSettings().Csv, zeb::SystemLocale());
    TCutter cutter(request);
    const TCutResult result = cutter.Run();
    if (result != TCutResult::Ok) PrintError(cutter.Message());
    // An empty window is no error (the file is written), but it is seldom what was meant.
    else if (cutter.Written() == 0 && (std::isfinite(request.Start) || std::isfinite(request.End)))
        PrintError(zeb::Txt(TTextId::CmpWindowEmpty));
    return int(result);
}

} // namespace companion
