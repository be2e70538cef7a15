#pragma once
// INI files as the suite's programs write them: the prototype file "zeb_reg.ini" and the display
// templates. Sections and keys stay in file order (QSettings sorts them), lookups ignore case,
// enclosing quotes are removed on reading, and comments and unknown lines survive a rewrite.

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>

#include <functional>
#include <optional>

class TIniFile {
public:
    TIniFile() = default;
    // Reads the file when it exists; a missing or unreadable file gives an empty one.
    explicit TIniFile(const QString& fileName);

    // False when the file cannot be read; the content is then empty.
    bool Load(const QString& fileName);
    void LoadFromBytes(const QByteArray& bytes);
    // Written through QSaveFile: on failure the previous file stays as it was.
    bool Save(const QString& fileName) const;
    QByteArray ToBytes() const;
    void Clear();

    // Section names in file order, as spelled in the file.
    QStringList Sections() const;
    bool SectionExists(const QString& section) const;
    // Key names of a section in file order.
    QStringList Keys(const QString& section) const;
    bool ValueExists(const QString& section, const QString& key) const;

    // The value with surrounding blanks and one pair of enclosing quotes removed.
    std::optional<QString> Value(const QString& section, const QString& key) const;
    QString ReadString(const QString& section, const QString& key, const QString& def = {}) const;
    // Decimal with optional sign, or hexadecimal "0x..."/"$..."; must fit 32 bits.
    std::optional<int> TryReadInteger(const QString& section, const QString& key) const;
    int ReadInteger(const QString& section, const QString& key, int def) const;
    // An integer (non-zero is true) or "true"/"false".
    std::optional<bool> TryReadBool(const QString& section, const QString& key) const;
    bool ReadBool(const QString& section, const QString& key, bool def) const;
    // Finite numbers only; '.' or ',' as decimal separator.
    std::optional<double> TryReadFloat(const QString& section, const QString& key) const;
    double ReadFloat(const QString& section, const QString& key, double def) const;

    // Strings and floats are written in apostrophes, integers and booleans bare.
    void WriteString(const QString& section, const QString& key, const QString& value);
    void WriteInteger(const QString& section, const QString& key, int value);
    void WriteBool(const QString& section, const QString& key, bool value);
    void WriteFloat(const QString& section, const QString& key, double value);
    // Writes the text as it stands.
    void WriteRaw(const QString& section, const QString& key, const QString& text);

    // Creates an empty section at the end unless it exists.
    void AddSection(const QString& section);
    void EraseSection(const QString& section);
    // Erases every section whose name the predicate accepts, in one pass.
    void EraseSectionsIf(const std::function<bool(const QString& name)>& erase);
    void DeleteKey(const QString& section, const QString& key);

    // Parsers shared with the settings store.
    static std::optional<int> ParseInteger(const QString& text);
    static std::optional<bool> ParseBool(const QString& text);
    static std::optional<double> ParseFloat(const QString& text);

private:
    // One line of a section: a key with its raw value, or anything else kept verbatim.
    struct TLine {
        QString Key; // empty for comments, blank and unparsable lines
        QString Text;
    };
    struct TSection {
        QString Name;
        QList<TLine> Lines;
    };

    TSection* Find(const QString& section);
    const TSection* Find(const QString& section) const;
    const TLine* FindLine(const QString& section, const QString& key) const;
    TSection& FindOrAdd(const QString& section);

    enum class TEncoding { Ansi, Utf8, Utf8Bom };

    void Reindex();

    QList<TLine> FHead; // lines before the first section
    QList<TSection> FSections;
    // Case-folded section name to its position, so that files with very many sections read
    // and write in linear time.
    QHash<QString, qsizetype> FIndex;
    mutable QString FLastName;         // the last section found, as asked for,
    mutable qsizetype FLastIndex = -1; // and its position (-1: none)
    TEncoding FEncoding = TEncoding::Ansi; // as read; kept on writing where the text allows
};
