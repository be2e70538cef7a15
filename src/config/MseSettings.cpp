#include "config/MseSettings.h"

#include "config/IniFile.h"

#include <QFileInfo>
#include <QHash>
#include <QSet>

namespace {

// Reading: a key present in the file is set, whatever its value, and kept as it stands (limits
// apply where the template is applied, so saving writes back what was read). A value that is no
// number at all keeps the value it would replace (the default after clearing, or the curve's own)
// but is still set: the platform's typed INI reads answer their default for such text, and the
// key is there, so the template does state it.

void Get(const TIniFile& ini, const QString& sec, const QString& key, TOpt<QString>& o) {
    if (const std::optional<QString> v = ini.Value(sec, key)) o.Set(*v);
}

void Get(const TIniFile& ini, const QString& sec, const QString& key, TOpt<int>& o) {
    if (const std::optional<QString> v = ini.Value(sec, key))
        o.Set(TIniFile::ParseInteger(*v).value_or(o.Value));
}

void Get(const TIniFile& ini, const QString& sec, const QString& key, TOpt<bool>& o) {
    if (const std::optional<QString> v = ini.Value(sec, key))
        o.Set(TIniFile::ParseBool(*v).value_or(o.Value));
}

void Get(const TIniFile& ini, const QString& sec, const QString& key, TOpt<double>& o) {
    if (const std::optional<QString> v = ini.Value(sec, key))
        o.Set(TIniFile::ParseFloat(*v).value_or(o.Value));
}

// Writing: set values only, unless all are asked for.

void Put(TIniFile& ini, const QString& sec, const QString& key, const TOpt<QString>& o, bool all) {
    if (all || o.IsSet) ini.WriteString(sec, key, o.Value);
}

void Put(TIniFile& ini, const QString& sec, const QString& key, const TOpt<int>& o, bool all) {
    if (all || o.IsSet) ini.WriteInteger(sec, key, o.Value);
}

void Put(TIniFile& ini, const QString& sec, const QString& key, const TOpt<bool>& o, bool all) {
    if (all || o.IsSet) ini.WriteBool(sec, key, o.Value);
}

void Put(TIniFile& ini, const QString& sec, const QString& key, const TOpt<double>& o, bool all) {
    if (all || o.IsSet) ini.WriteFloat(sec, key, o.Value);
}

const QString kGeneral = QStringLiteral("General");
const QString kFontSections[] = {QStringLiteral("Font Title"), QStringLiteral("Font Axes"),
                                 QStringLiteral("Font Legend"), QStringLiteral("Font Text")};
const QString kAxisBottom = QStringLiteral("Axis Bottom");
const QString kAxisLeft = QStringLiteral("Axis Left");
const QString kAxisRight = QStringLiteral("Axis Right");
const QString kCursor1 = QStringLiteral("Cursor1");
const QString kCursor2 = QStringLiteral("Cursor2");
const QString kPrint = QStringLiteral("Print");

void ReadFont(const TIniFile& ini, const QString& sec, TMseFont& f) {
    Get(ini, sec, QStringLiteral("Name"), f.Name);
    Get(ini, sec, QStringLiteral("Size"), f.Size);
    Get(ini, sec, QStringLiteral("Style"), f.Style);
}

void WriteFont(TIniFile& ini, const QString& sec, const TMseFont& f, bool all) {
    Put(ini, sec, QStringLiteral("Name"), f.Name, all);
    Put(ini, sec, QStringLiteral("Size"), f.Size, all);
    Put(ini, sec, QStringLiteral("Style"), f.Style, all);
}

void ReadAxis(const TIniFile& ini, const QString& sec, TMseAxis& a, bool bottom) {
    Get(ini, sec, QStringLiteral("Name"), a.Name);
    Get(ini, sec, QStringLiteral("Min"), a.Min);
    Get(ini, sec, QStringLiteral("Max"), a.Max);
    Get(ini, sec, QStringLiteral("Inc"), a.Inc);
    Get(ini, sec, QStringLiteral("Format"), a.Format);
    Get(ini, sec, QStringLiteral("Grid"), a.Grid);
    Get(ini, sec, QStringLiteral("Auto"), a.Auto);
    if (bottom) Get(ini, sec, QStringLiteral("XType"), a.XType);
}

void WriteAxis(TIniFile& ini, const QString& sec, const TMseAxis& a, bool bottom, bool all) {
    Put(ini, sec, QStringLiteral("Name"), a.Name, all);
    Put(ini, sec, QStringLiteral("Min"), a.Min, all);
    Put(ini, sec, QStringLiteral("Max"), a.Max, all);
    Put(ini, sec, QStringLiteral("Inc"), a.Inc, all);
    Put(ini, sec, QStringLiteral("Format"), a.Format, all);
    Put(ini, sec, QStringLiteral("Grid"), a.Grid, all);
    Put(ini, sec, QStringLiteral("Auto"), a.Auto, all);
    if (bottom) Put(ini, sec, QStringLiteral("XType"), a.XType, all);
}

void ReadCursor(const TIniFile& ini, const QString& sec, TMseCursor& c) {
    Get(ini, sec, QStringLiteral("Axis"), c.Axis);
    Get(ini, sec, QStringLiteral("Width"), c.Width);
    Get(ini, sec, QStringLiteral("XFormat"), c.XFormat);
    Get(ini, sec, QStringLiteral("YFormat"), c.YFormat);
}

void WriteCursor(TIniFile& ini, const QString& sec, const TMseCursor& c, bool all) {
    Put(ini, sec, QStringLiteral("Axis"), c.Axis, all);
    Put(ini, sec, QStringLiteral("Width"), c.Width, all);
    Put(ini, sec, QStringLiteral("XFormat"), c.XFormat, all);
    Put(ini, sec, QStringLiteral("YFormat"), c.YFormat, all);
}

bool LoadIni(TIniFile& ini, const QString& fileName) {
    return QFileInfo(fileName).isFile() && ini.Load(fileName);
}

// Keeps whatever else the file holds; a file that is not there yet starts empty.
template <typename F> bool UpdateIni(const QString& fileName, F&& write) {
    TIniFile ini;
    if (QFileInfo::exists(fileName) && !LoadIni(ini, fileName)) return false;
    write(ini);
    return ini.Save(fileName);
}

} // namespace

// ============================================================================ curve

void TMseSettingsCurve::Clear() {
    sModulName.Reset({});
    sChannelName.Reset({});
    Title.Reset({});
    Axis.Reset(0);
    Color.Reset(0);
    Width.Reset(1);
    Type.Reset(0);
    Format.Reset(QStringLiteral("0.000"));
}

bool IsAlarm(int mode, double l1, double l2, double value) {
    switch (mode) {
    case 1:
        return value < l1;
    case 2:
        return value > l1;
    case 3:
        return l1 < value && value < l2;
    case 4:
        return value < l1 || value > l2;
    default:
        return false;
    }
}

void TMseSettingsCurve::ReadDisplay(const TIniFile& ini, const QString& section, bool withTitle) {
    if (withTitle) Get(ini, section, QStringLiteral("Title"), Title);
    Get(ini, section, QStringLiteral("Axis"), Axis);
    Get(ini, section, QStringLiteral("Color"), Color);
    Get(ini, section, QStringLiteral("Width"), Width);
    Get(ini, section, QStringLiteral("Type"), Type);
    Get(ini, section, QStringLiteral("Format"), Format);
}

void TMseSettingsCurve::Read(const TIniFile& ini, const QString& section) {
    Get(ini, section, QStringLiteral("ModulName"), sModulName);
    Get(ini, section, QStringLiteral("ChannelName"), sChannelName);
    ReadDisplay(ini, section, true);
}

void TMseSettingsCurve::Write(TIniFile& ini, const QString& section, bool all) const {
    Put(ini, section, QStringLiteral("ModulName"), sModulName, all);
    Put(ini, section, QStringLiteral("ChannelName"), sChannelName, all);
    Put(ini, section, QStringLiteral("Title"), Title, all);
    Put(ini, section, QStringLiteral("Axis"), Axis, all);
    Put(ini, section, QStringLiteral("Color"), Color, all);
    Put(ini, section, QStringLiteral("Width"), Width, all);
    Put(ini, section, QStringLiteral("Type"), Type, all);
    Put(ini, section, QStringLiteral("Format"), Format, all);
}

// ============================================================================ list entries

void TMseCalc::Read(const TIniFile& ini, const QString& section) {
    Get(ini, section, QStringLiteral("ModulName"), ModulName);
    Get(ini, section, QStringLiteral("ChannelName"), ChannelName);
    Get(ini, section, QStringLiteral("Unit"), Unit);
    Get(ini, section, QStringLiteral("Formula"), Formula);
}

void TMseCalc::Write(TIniFile& ini, const QString& section, bool all) const {
    Put(ini, section, QStringLiteral("ModulName"), ModulName, all);
    Put(ini, section, QStringLiteral("ChannelName"), ChannelName, all);
    Put(ini, section, QStringLiteral("Unit"), Unit, all);
    Put(ini, section, QStringLiteral("Formula"), Formula, all);
}

namespace {

// A line of an INI file holds no line break: a text keeps its breaks as "\n" (and "\r"), and a
// backslash that would read as such a pair is doubled. Any other backslash stays as it is, so
// texts written before, paths among them, read back unchanged.
QString EscapeLines(const QString& text) {
    QString out;
    out.reserve(text.size());
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text[i];
        if (c == QLatin1Char('\n')) {
            out += QStringLiteral("\\n");
        } else if (c == QLatin1Char('\r')) {
            out += QStringLiteral("\\r");
        } else if (c == QLatin1Char('\\') && i + 1 < text.size() &&
                   (text[i + 1] == QLatin1Char('n') || text[i + 1] == QLatin1Char('r') ||
                    text[i + 1] == QLatin1Char('\\'))) {
            out += QStringLiteral("\\\\");
        } else {
            out += c;
        }
    }
    return out;
}

QString UnescapeLines(const QString& text) {
    QString out;
    out.reserve(text.size());
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text[i];
        if (c == QLatin1Char('\\') && i + 1 < text.size()) {
            const QChar n = text[i + 1];
            if (n == QLatin1Char('n') || n == QLatin1Char('r') || n == QLatin1Char('\\')) {
                out += n == QLatin1Char('n') ? QLatin1Char('\n') : n == QLatin1Char('r') ? QLatin1Char('\r') : n;
                ++i;
                continue;
            }
        }
        out += c;
    }
    return out;
}

void GetLines(const TIniFile& ini, const QString& sec, const QString& key, TOpt<QString>& o) {
    Get(ini, sec, key, o);
    if (o.IsSet) o.Value = UnescapeLines(o.Value);
}

void PutLines(TIniFile& ini, const QString& sec, const QString& key, const TOpt<QString>& o, bool all) {
    if (all || o.IsSet) ini.WriteString(sec, key, EscapeLines(o.Value));
}

} // namespace

void TMseText::Read(const TIniFile& ini, const QString& section) {
    GetLines(ini, section, QStringLiteral("Text"), Text);
    Get(ini, section, QStringLiteral("X"), X);
    Get(ini, section, QStringLiteral("Y"), Y);
}

void TMseText::Write(TIniFile& ini, const QString& section, bool all) const {
    PutLines(ini, section, QStringLiteral("Text"), Text, all);
    Put(ini, section, QStringLiteral("X"), X, all);
    Put(ini, section, QStringLiteral("Y"), Y, all);
}

void TMseTimeText::Read(const TIniFile& ini, const QString& section) {
    GetLines(ini, section, QStringLiteral("Text"), Text);
    Get(ini, section, QStringLiteral("X"), X);
    Get(ini, section, QStringLiteral("Y"), Y);
}

void TMseTimeText::Write(TIniFile& ini, const QString& section, bool all) const {
    PutLines(ini, section, QStringLiteral("Text"), Text, all);
    Put(ini, section, QStringLiteral("X"), X, all);
    Put(ini, section, QStringLiteral("Y"), Y, all);
}

// ============================================================================ lists

template <typename TItem> QStringList TMseList<TItem>::Sections(const TIniFile& ini) const {
    QStringList names = ini.Sections();
    // The number after the prefix is not looked at: "Curves" is a curve section, and a
    // "TimeText" section never counts as a "Text" section.
    names.removeIf([this](const QString& n) { return !n.startsWith(FPrefix, Qt::CaseSensitive); });
    return names;
}

template <typename TItem> void TMseList<TItem>::Load(const TIniFile& ini) {
    Clear();
    const QStringList sections = Sections(ini);
    for (const QString& s : sections)
        Add().Read(ini, s);
}

template <typename TItem> void TMseList<TItem>::Save(TIniFile& ini, bool all) const {
    // Also any section a new entry's name would find: lookups ignore case, so a stray "curve0"
    // would otherwise take the new values and then be passed over on reading.
    QSet<QString> taken;
    for (int i = 0; i < Count(); ++i)
        taken.insert(QString(FPrefix + QString::number(i)).toCaseFolded());
    ini.EraseSectionsIf([&](const QString& name) {
        return name.startsWith(FPrefix, Qt::CaseSensitive) || taken.contains(name.toCaseFolded());
    });
    for (int i = 0; i < Count(); ++i) {
        const QString section = FPrefix + QString::number(i);
        ini.AddSection(section);
        (*this)[i].Write(ini, section, all);
    }
}

template class TMseList<TMseSettingsCurve>;
template class TMseList<TMseCalc>;
template class TMseList<TMseText>;
template class TMseList<TMseTimeText>;

void TMseSettingsCurveList::Apply(const TIniFile& ini) {
    const QStringList sections = Sections(ini);
    // The first section for each module and channel, and for each channel alone.
    QHash<std::pair<QString, QString>, qsizetype> byBoth;
    QHash<QString, qsizetype> byChannel;
    for (qsizetype j = 0; j < sections.size(); ++j) {
        const QString module = ini.ReadString(sections[j], QStringLiteral("ModulName"));
        const QString channel = ini.ReadString(sections[j], QStringLiteral("ChannelName"));
        if (!byBoth.contains(std::pair(module, channel))) byBoth.insert(std::pair(module, channel), j);
        if (!byChannel.contains(channel)) byChannel.insert(channel, j);
    }
    for (int i = 0; i < Count(); ++i) {
        TMseSettingsCurve& curve = (*this)[i];
        const QString& module = curve.sModulName.Value;
        const QString& channel = curve.sChannelName.Value;
        if (module.isEmpty() || channel.isEmpty()) continue;
        if (const auto it = byBoth.constFind(std::pair(module, channel)); it != byBoth.constEnd()) {
            curve.ReadDisplay(ini, sections[*it], true);
            continue;
        }
        // The same channel from another logger: its look, but the curve keeps its own title.
        if (const auto it = byChannel.constFind(channel); it != byChannel.constEnd())
            curve.ReadDisplay(ini, sections[*it], false);
    }
}

void TMseSettingsCurveList::LoadOrApply(const TIniFile& ini) {
    if (IsEmpty())
        Load(ini);
    else
        Apply(ini);
}

// ============================================================================ settings

void TMseSettings::ClearGeneral() {
    Title.Reset({});
    ShowName.Reset(true);
    Foot.Reset({});
    ShowTime.Reset(true);
    OnlineRate.Reset(1000);
    DispTime.Reset(0);
    DispLimits.Reset(false);
    ViewCalc.Reset(false);
    ViewLimit.Reset(false);

    for (TMseFont* f : {&FontTitle, &FontAxes, &FontLegend, &FontText}) {
        f->Name.Reset(QStringLiteral("Arial"));
        f->Size.Reset(8);
        f->Style.Reset(0);
    }

    // Axis values the file format leaves open: automatic scaling with a 0..100 range and an
    // automatic increment (0) for all three axes; grid lines on the bottom and left axes only,
    // so the right axis does not draw a second grid; the bottom axis shows date and time
    // (XType 2), since recordings carry absolute time stamps.
    for (TMseAxis* a : {&AxisBottom, &AxisLeft, &AxisRight}) {
        a->Name.Reset({});
        a->Min.Reset(0.0);
        a->Max.Reset(100.0);
        a->Inc.Reset(0.0);
        a->Format.Reset(QStringLiteral("0.000"));
        a->Grid.Reset(true);
        a->Auto.Reset(true);
        a->XType.Reset(2);
    }
    AxisBottom.Format.Reset({});
    AxisRight.Grid.Reset(false);

    for (TMseCursor* c : {&Cursor1, &Cursor2}) {
        c->Axis.Reset(0);
        c->Width.Reset(0);
        c->XFormat.Reset(QStringLiteral("0.000"));
        c->YFormat.Reset(QStringLiteral("0.000"));
    }

    Print.Landscape.Reset(true);
    Print.MarginTop.Reset(0);
    Print.MarginLeft.Reset(0);
    Print.MarginRight.Reset(0);
    Print.MarginBottom.Reset(0);
    Print.Proportional.Reset(false);
    Print.CheckBoxes.Reset(true);
}

void TMseSettings::Clear() {
    ClearGeneral();
    Curves.Clear();
    Calcs.Clear();
    Texts.Clear();
    TimeTexts.Clear();
}

void TMseSettings::Read(const TIniFile& ini) {
    ClearGeneral();
    Get(ini, kGeneral, QStringLiteral("Title"), Title);
    Get(ini, kGeneral, QStringLiteral("ShowName"), ShowName);
    Get(ini, kGeneral, QStringLiteral("Foot"), Foot);
    Get(ini, kGeneral, QStringLiteral("ShowTime"), ShowTime);
    Get(ini, kGeneral, QStringLiteral("OnlineRate"), OnlineRate);
    Get(ini, kGeneral, QStringLiteral("DispTime"), DispTime);
    Get(ini, kGeneral, QStringLiteral("DispLimits"), DispLimits);
    Get(ini, kGeneral, QStringLiteral("ViewCalc"), ViewCalc);
    Get(ini, kGeneral, QStringLiteral("ViewLimit"), ViewLimit);

    ReadFont(ini, kFontSections[0], FontTitle);
    ReadFont(ini, kFontSections[1], FontAxes);
    ReadFont(ini, kFontSections[2], FontLegend);
    ReadFont(ini, kFontSections[3], FontText);

    ReadAxis(ini, kAxisBottom, AxisBottom, true);
    ReadAxis(ini, kAxisLeft, AxisLeft, false);
    ReadAxis(ini, kAxisRight, AxisRight, false);

    ReadCursor(ini, kCursor1, Cursor1);
    ReadCursor(ini, kCursor2, Cursor2);

    Get(ini, kPrint, QStringLiteral("Landscape"), Print.Landscape);
    Get(ini, kPrint, QStringLiteral("MarginTop"), Print.MarginTop);
    Get(ini, kPrint, QStringLiteral("MarginLeft"), Print.MarginLeft);
    Get(ini, kPrint, QStringLiteral("MarginRight"), Print.MarginRight);
    Get(ini, kPrint, QStringLiteral("MarginBottom"), Print.MarginBottom);
    Get(ini, kPrint, QStringLiteral("Proportional"), Print.Proportional);
    Get(ini, kPrint, QStringLiteral("CheckBoxes"), Print.CheckBoxes);

    Curves.LoadOrApply(ini);
    // A template without notices or calculated curves leaves the present ones alone.
    if (!Calcs.Sections(ini).isEmpty()) Calcs.Load(ini);
    if (!Texts.Sections(ini).isEmpty()) Texts.Load(ini);
    if (!TimeTexts.Sections(ini).isEmpty()) TimeTexts.Load(ini);
}

void TMseSettings::Write(TIniFile& ini, bool all) const {
    Put(ini, kGeneral, QStringLiteral("Title"), Title, all);
    Put(ini, kGeneral, QStringLiteral("ShowName"), ShowName, all);
    Put(ini, kGeneral, QStringLiteral("Foot"), Foot, all);
    Put(ini, kGeneral, QStringLiteral("ShowTime"), ShowTime, all);
    Put(ini, kGeneral, QStringLiteral("OnlineRate"), OnlineRate, all);
    Put(ini, kGeneral, QStringLiteral("DispTime"), DispTime, all);
    Put(ini, kGeneral, QStringLiteral("DispLimits"), DispLimits, all);
    Put(ini, kGeneral, QStringLiteral("ViewCalc"), ViewCalc, all);
    Put(ini, kGeneral, QStringLiteral("ViewLimit"), ViewLimit, all);

    WriteFont(ini, kFontSections[0], FontTitle, all);
    WriteFont(ini, kFontSections[1], FontAxes, all);
    WriteFont(ini, kFontSections[2], FontLegend, all);
    WriteFont(ini, kFontSections[3], FontText, all);

    WriteAxis(ini, kAxisBottom, AxisBottom, true, all);
    WriteAxis(ini, kAxisLeft, AxisLeft, false, all);
    WriteAxis(ini, kAxisRight, AxisRight, false, all);

    WriteCursor(ini, kCursor1, Cursor1, all);
    WriteCursor(ini, kCursor2, Cursor2, all);

    Put(ini, kPrint, QStringLiteral("Landscape"), Print.Landscape, all);
    Put(ini, kPrint, QStringLiteral("MarginTop"), Print.MarginTop, all);
    Put(ini, kPrint, QStringLiteral("MarginLeft"), Print.MarginLeft, all);
    Put(ini, kPrint, QStringLiteral("MarginRight"), Print.MarginRight, all);
    Put(ini, kPrint, QStringLiteral("MarginBottom"), Print.MarginBottom, all);
    Put(ini, kPrint, QStringLiteral("Proportional"), Print.Proportional, all);
    Put(ini, kPrint, QStringLiteral("CheckBoxes"), Print.CheckBoxes, all);

    Curves.Save(ini, all);
    Calcs.Save(ini, all);
    Texts.Save(ini, all);
    TimeTexts.Save(ini, all);
}

bool TMseSettings::OpenFile(const QString& fileName) {
    TIniFile ini;
    if (!LoadIni(ini, fileName)) return false;
    Read(ini);
    return true;
}

bool TMseSettings::SaveFile(const QString& fileName, bool all) const {
    return UpdateIni(fileName, [&](TIniFile& ini) { Write(ini, all); });
}

bool TMseSettings::OpenCurveFile(const QString& fileName) {
    TIniFile ini;
    if (!LoadIni(ini, fileName)) return false;
    Curves.LoadOrApply(ini);
    return true;
}

bool TMseSettings::SaveCurveFile(const QString& fileName, bool all) const {
    return UpdateIni(fileName, [&](TIniFile& ini) { Curves.Save(ini, all); });
}

bool TMseSettings::OpenCalcFile(const QString& fileName) {
    TIniFile ini;
    if (!LoadIni(ini, fileName)) return false;
    Calcs.Load(ini);
    return true;
}

bool TMseSettings::SaveCalcFile(const QString& fileName, bool all) const {
    return UpdateIni(fileName, [&](TIniFile& ini) { Calcs.Save(ini, all); });
}
