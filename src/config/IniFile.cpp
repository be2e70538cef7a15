#include "config/IniFile.h"

#include "data/AnsiText.h"
#include "data/Formats.h"

#include <QFile>
#include <QSaveFile>
#include <QSet>
#include <QStringDecoder>

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

const QByteArray kUtf8Bom("\xEF\xBB\xBF");

// Bytes beyond ASCII that decode as UTF-8 without error.
bool LooksLikeUtf8(const QByteArray& bytes) {
    const bool ascii =
        std::all_of(bytes.begin(), bytes.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
    if (ascii) return false;
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString text = decoder.decode(bytes); // decoding happens on conversion
    return !decoder.hasError();
}

// Inserts the key; false when it was there already.
bool InsertNew(QSet<QString>& set, const QString& key) {
    const qsizetype before = set.size();
    set.insert(key);
    return set.size() != before;
}

// Strips blanks and one pair of matching enclosing quotes, the way the platform's reader does.
QString Unquote(const QString& raw) {
    QString v = raw.trimmed();
    if (v.size() >= 2) {
        const QChar first = v.front();
        if ((first == QLatin1Char('\'') || first == QLatin1Char('"')) && v.back() == first)
            v = v.mid(1, v.size() - 2);
    }
    return v;
}

// A value must stay on its line.
QString OneLine(QString text) {
    text.replace(QLatin1String("\r\n"), QLatin1String(" "));
    text.replace(QLatin1Char('\r'), QLatin1Char(' '));
    text.replace(QLatin1Char('\n'), QLatin1Char(' '));
    return text;
}

QString Quoted(const QString& text) {
    return QLatin1Char('\'') + OneLine(text) + QLatin1Char('\'');
}

} // namespace

TIniFile::TIniFile(const QString& fileName) {
    Load(fileName);
}

void TIniFile::Clear() {
    FHead.clear();
    FSections.clear();
    FIndex.clear();
    FLastIndex = -1;
    FEncoding = TEncoding::Ansi;
}

bool TIniFile::Load(const QString& fileName) {
    Clear();
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly)) return false;
    LoadFromBytes(file.readAll());
    return file.error() == QFileDevice::NoError;
}

void TIniFile::LoadFromBytes(const QByteArray& bytes) {
    Clear();
    QString text;
    if (bytes.startsWith(kUtf8Bom)) {
        FEncoding = TEncoding::Utf8Bom;
        text = QString::fromUtf8(bytes.mid(kUtf8Bom.size()));
    } else {
        // Files of the suite are Windows-1252; text that is valid UTF-8 beyond ASCII comes from
        // an editor that wrote UTF-8 without a mark.
        if (LooksLikeUtf8(bytes)) {
            FEncoding = TEncoding::Utf8;
            text = QString::fromUtf8(bytes);
        } else {
            text = zeb::AnsiToString(bytes);
        }
    }

    text.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    text.replace(QLatin1Char('\r'), QLatin1Char('\n'));
    QStringList lines = text.split(QLatin1Char('\n'));
    // A final line break does not start another line.
    if (!lines.isEmpty() && lines.back().isEmpty()) lines.removeLast();

    TSection* current = nullptr;
    for (const QString& line : std::as_const(lines)) {
        const QString t = line.trimmed();
        if (t.startsWith(QLatin1Char('['))) {
            const qsizetype close = t.indexOf(QLatin1Char(']'));
            if (close > 0) {
                const QString name = t.mid(1, close - 1).trimmed();
                // A repeated section continues the first one: lookups could never reach it otherwise.
                current = Find(name);
                if (!current) {
                    FIndex.insert(name.toCaseFolded(), FSections.size());
                    FSections.append(TSection{name, {}});
                    current = &FSections.back();
                }
                continue;
            }
        }
        TLine entry{{}, line};
        if (!t.startsWith(QLatin1Char(';')) && !t.startsWith(QLatin1Char('#'))) {
            const qsizetype eq = line.indexOf(QLatin1Char('='));
            if (eq > 0) {
                const QString key = line.left(eq).trimmed();
                if (!key.isEmpty()) entry = TLine{key, line.mid(eq + 1)};
            }
        }
        if (current)
            current->Lines.append(entry);
        else
            FHead.append(TLine{{}, line}); // keys before any section belong nowhere
    }
}

QByteArray TIniFile::ToBytes() const {
    QString text;
    const auto put = [&text](const TLine& l) {
        text += l.Key.isEmpty() ? l.Text : l.Key + QLatin1Char('=') + l.Text;
        text += QLatin1String("\r\n");
    };
    for (const TLine& l : FHead)
        put(l);
    for (const TSection& s : FSections) {
        text += QLatin1Char('[') + s.Name + QLatin1String("]\r\n");
        for (const TLine& l : s.Lines)
            put(l);
    }
    if (FEncoding == TEncoding::Ansi && zeb::IsAnsiRepresentable(text)) {
        // Windows-1252 bytes that happen to be valid UTF-8 would read back as other text; the
        // mark keeps their meaning.
        const QByteArray ansi = zeb::StringToAnsi(text);
        if (!LooksLikeUtf8(ansi)) return ansi;
        return kUtf8Bom + text.toUtf8();
    }
    const QByteArray utf8 = text.toUtf8();
    return FEncoding == TEncoding::Utf8 ? utf8 : kUtf8Bom + utf8;
}

bool TIniFile::Save(const QString& fileName) const {
    QSaveFile file(fileName);
    // Unbuffered, so a short write (disk full, size limit) shows in the count: a buffered
    // write reports success and the flush at commit does not notice a partial write.
    if (!file.open(QIODevice::WriteOnly | QIODevice::Unbuffered)) return false;
    const QByteArray bytes = ToBytes();
    if (file.write(bytes) != bytes.size()) {
        file.cancelWriting();
        return false;
    }
    return file.commit();
}

// ---------------------------------------------------------------------------- lookup

TIniFile::TSection* TIniFile::Find(const QString& section) {
    // Readers and writers ask for the same section many times in a row: the last answer
    // spares folding the name's case and hashing it each time.
    if (FLastIndex >= 0 && section == FLastName) return &FSections[FLastIndex];
    const auto it = FIndex.constFind(section.toCaseFolded());
    if (it == FIndex.constEnd()) return nullptr;
    FLastName = section;
    FLastIndex = *it;
    return &FSections[*it];
}

void TIniFile::Reindex() {
    FLastIndex = -1;
    FIndex.clear();
    FIndex.reserve(FSections.size());
    for (qsizetype i = 0; i < FSections.size(); ++i)
        FIndex.insert(FSections[i].Name.toCaseFolded(), i);
}

const TIniFile::TSection* TIniFile::Find(const QString& section) const {
    return const_cast<TIniFile*>(this)->Find(section);
}

TIniFile::TSection& TIniFile::FindOrAdd(const QString& section) {
    if (TSection* s = Find(section)) return *s;
    // A blank line before a new section, as a person would write it.
    QList<TLine>& last = FSections.isEmpty() ? FHead : FSections.back().Lines;
    const bool hasContent = !FHead.isEmpty() || !FSections.isEmpty();
    if (hasContent && (last.isEmpty() || !last.back().Key.isEmpty() || !last.back().Text.trimmed().isEmpty()))
        last.append(TLine{});
    const QString name = OneLine(section).trimmed();
    FIndex.insert(name.toCaseFolded(), FSections.size());
    FSections.append(TSection{name, {}});
    return FSections.back();
}

const TIniFile::TLine* TIniFile::FindLine(const QString& section, const QString& key) const {
    const TSection* s = Find(section);
    if (!s) return nullptr;
    // The first of repeated keys counts, as with the platform's reader.
    for (const TLine& l : s->Lines)
        if (!l.Key.isEmpty() && l.Key.compare(key, Qt::CaseInsensitive) == 0) return &l;
    return nullptr;
}

QStringList TIniFile::Sections() const {
    QStringList names;
    names.reserve(FSections.size());
    for (const TSection& s : FSections)
        names.append(s.Name);
    return names;
}

bool TIniFile::SectionExists(const QString& section) const {
    return Find(section) != nullptr;
}

QStringList TIniFile::Keys(const QString& section) const {
    QStringList keys;
    QSet<QString> seen;
    if (const TSection* s = Find(section))
        for (const TLine& l : s->Lines)
            if (!l.Key.isEmpty() && InsertNew(seen, l.Key.toCaseFolded())) keys.append(l.Key);
    return keys;
}

bool TIniFile::ValueExists(const QString& section, const QString& key) const {
    return FindLine(section, key) != nullptr;
}

// ---------------------------------------------------------------------------- reading

std::optional<QString> TIniFile::Value(const QString& section, const QString& key) const {
    const TLine* l = FindLine(section, key);
    if (!l) return std::nullopt;
    return Unquote(l->Text);
}

QString TIniFile::ReadString(const QString& section, const QString& key, const QString& def) const {
    return Value(section, key).value_or(def);
}

std::optional<int> TIniFile::ParseInteger(const QString& text) {
    const QString t = text.trimmed();
    bool ok = false;
    if (t.startsWith(QLatin1String("0x"), Qt::CaseInsensitive) || t.startsWith(QLatin1Char('$'))) {
        const QString digits = t.mid(t.startsWith(QLatin1Char('$')) ? 1 : 2);
        if (digits.isEmpty() || digits.startsWith(QLatin1Char('-')) || digits.startsWith(QLatin1Char('+')))
            return std::nullopt;
        const qulonglong v = digits.toULongLong(&ok, 16);
        // Colours of the platform are written as eight hex digits; they are the same 32 bits.
        if (!ok || v > 0xFFFFFFFFull) return std::nullopt;
        return static_cast<int>(static_cast<quint32>(v));
    }
    for (QChar c : t)
        if (!c.isDigit() && c != QLatin1Char('-') && c != QLatin1Char('+')) return std::nullopt;
    const qlonglong v = t.toLongLong(&ok, 10);
    if (!ok || v < std::numeric_limits<int>::min() || v > std::numeric_limits<int>::max())
        return std::nullopt;
    return static_cast<int>(v);
}

std::optional<bool> TIniFile::ParseBool(const QString& text) {
    const QString t = text.trimmed();
    if (t.compare(QLatin1String("true"), Qt::CaseInsensitive) == 0) return true;
    if (t.compare(QLatin1String("false"), Qt::CaseInsensitive) == 0) return false;
    const std::optional<int> i = ParseInteger(t);
    if (!i) return std::nullopt;
    return *i != 0;
}

std::optional<double> TIniFile::ParseFloat(const QString& text) {
    QString t = text.trimmed();
    // Written with the writer's decimal separator: either '.' or ','. Never a group separator,
    // so a lone ',' is the decimal point and anything mixed is garbage.
    if (t.contains(QLatin1Char(','))) {
        if (t.contains(QLatin1Char('.')) || t.count(QLatin1Char(',')) > 1) return std::nullopt;
        t.replace(QLatin1Char(','), QLatin1Char('.'));
    }
    static const zeb::TFormatSettings dot = [] {
        zeb::TFormatSettings fs;
        fs.DecimalSeparator = QLatin1Char('.');
        return fs;
    }();
    const std::optional<double> v = zeb::TryStrToFloat(t, dot);
    if (!v || !std::isfinite(*v)) return std::nullopt;
    return v;
}

std::optional<int> TIniFile::TryReadInteger(const QString& section, const QString& key) const {
    const std::optional<QString> v = Value(section, key);
    return v ? ParseInteger(*v) : std::nullopt;
}

int TIniFile::ReadInteger(const QString& section, const QString& key, int def) const {
    return TryReadInteger(section, key).value_or(def);
}

std::optional<bool> TIniFile::TryReadBool(const QString& section, const QString& key) const {
    const std::optional<QString> v = Value(section, key);
    return v ? ParseBool(*v) : std::nullopt;
}

bool TIniFile::ReadBool(const QString& section, const QString& key, bool def) const {
    return TryReadBool(section, key).value_or(def);
}

std::optional<double> TIniFile::TryReadFloat(const QString& section, const QString& key) const {
    const std::optional<QString> v = Value(section, key);
    return v ? ParseFloat(*v) : std::nullopt;
}

double TIniFile::ReadFloat(const QString& section, const QString& key, double def) const {
    return TryReadFloat(section, key).value_or(def);
}

// ---------------------------------------------------------------------------- writing

void TIniFile::WriteRaw(const QString& section, const QString& key, const QString& text) {
    TSection& s = FindOrAdd(section);
    for (TLine& l : s.Lines)
        if (!l.Key.isEmpty() && l.Key.compare(key, Qt::CaseInsensitive) == 0) {
            l.Text = OneLine(text);
            return;
        }
    // New keys go after the last key, before trailing blank lines and comments.
    qsizetype at = s.Lines.size();
    while (at > 0 && s.Lines[at - 1].Key.isEmpty())
        --at;
    s.Lines.insert(at, TLine{OneLine(key).trimmed(), OneLine(text)});
}

void TIniFile::WriteString(const QString& section, const QString& key, const QString& value) {
    WriteRaw(section, key, Quoted(value));
}

void TIniFile::WriteInteger(const QString& section, const QString& key, int value) {
    WriteRaw(section, key, QString::number(value));
}

void TIniFile::WriteBool(const QString& section, const QString& key, bool value) {
    WriteRaw(section, key, value ? QStringLiteral("1") : QStringLiteral("0"));
}

void TIniFile::WriteFloat(const QString& section, const QString& key, double value) {
    WriteRaw(section, key, Quoted(zeb::FloatToStr(value)));
}

void TIniFile::AddSection(const QString& section) {
    FindOrAdd(section);
}

void TIniFile::EraseSection(const QString& section) {
    const auto it = FIndex.constFind(section.toCaseFolded());
    if (it == FIndex.constEnd()) return;
    FSections.removeAt(*it);
    Reindex();
}

void TIniFile::EraseSectionsIf(const std::function<bool(const QString& name)>& erase) {
    if (FSections.removeIf([&erase](const TSection& s) { return erase(s.Name); })) Reindex();
}

void TIniFile::DeleteKey(const QString& section, const QString& key) {
    if (TSection* s = Find(section))
        s->Lines.removeIf([&key](const TLine& l) {
            return !l.Key.isEmpty() && l.Key.compare(key, Qt::CaseInsensitive) == 0;
        });
}
