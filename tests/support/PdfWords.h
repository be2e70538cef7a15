#pragma once
// The words of a PDF with their boxes, as pdftotext -bbox gives them (poppler-utils, installed
// by install-deps): where a text landed on a page, in the page's points; and its plain text.

#include <QFile>
#include <QProcess>
#include <QRectF>
#include <QString>
#include <QTemporaryDir>
#include <QXmlStreamReader>

#include <vector>

struct TPdfWord {
    QString Text;
    int Page = 0; // from 1
    QRectF Box;
    QSizeF PageSize;
    // The box's left and top as shares of the page.
    double Left() const { return Box.left() / PageSize.width(); }
    double Top() const { return Box.top() / PageSize.height(); }
};

inline std::vector<TPdfWord> PdfWords(const QString& pdf) {
    QTemporaryDir dir;
    const QString html = dir.filePath(QStringLiteral("words.html"));
    QProcess p;
    p.start(QStringLiteral("pdftotext"), {QStringLiteral("-bbox"), pdf, html});
    if (!p.waitForFinished(60000) || p.exitCode() != 0) return {};
    QFile f(html);
    if (!f.open(QIODevice::ReadOnly)) return {};
    std::vector<TPdfWord> words;
    QXmlStreamReader xml(&f);
    int page = 0;
    QSizeF size;
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement) continue;
        const auto a = xml.attributes();
        if (xml.name() == QLatin1String("page")) {
            ++page;
            size = QSizeF(a.value(QLatin1String("width")).toDouble(), a.value(QLatin1String("height")).toDouble());
        } else if (xml.name() == QLatin1String("word")) {
            TPdfWord w;
            w.Page = page;
            w.PageSize = size;
            const double x0 = a.value(QLatin1String("xMin")).toDouble(), y0 = a.value(QLatin1String("yMin")).toDouble();
            const double x1 = a.value(QLatin1String("xMax")).toDouble(), y1 = a.value(QLatin1String("yMax")).toDouble();
            w.Box = QRectF(QPointF(x0, y0), QPointF(x1, y1));
            w.Text = xml.readElementText();
            words.push_back(w);
        }
    }
    return words;
}

// The PDF's text with its layout, as pdftotext -layout gives it; empty on failure.
inline QString PdfText(const QString& pdf) {
    QProcess p;
    p.start(QStringLiteral("pdftotext"), {QStringLiteral("-layout"), pdf, QStringLiteral("-")});
    if (!p.waitForFinished(60000) || p.exitCode() != 0) return {};
    return QString::fromUtf8(p.readAllStandardOutput());
}

// The first word with that text, or none.
inline const TPdfWord* FindWord(const std::vector<TPdfWord>& words, const QString& text) {
    for (const TPdfWord& w : words)
        if (w.Text == text) return &w;
    return nullptr;
}
