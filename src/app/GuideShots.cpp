// zeb_guide_shots FILE OUTDIR [FOLDER]: the user's guide's pictures of the real window, taken
// offscreen. The program starts as the viewer does, opens FILE, and works its menus as a user
// would: the chart with both cursors, the table, the configuration page, the calculation and
// limit views, the FFT view, and with FOLDER the summary of its recordings.
// scripts/guide-shots.sh runs it; nothing here is part of the viewer.

#include "app/Startup.h"
#include "ui/Main.h"

#include "store/Summary.h"
#include "ui/SummaryWindow.h"
#include "ui/ViewCalc.h"
#include "ui/ViewFFT.h"
#include "ui/ViewLimit.h"

#include <QAction>
#include <QCheckBox>
#include <QPushButton>
#include <QTabWidget>
#include <QApplication>
#include <QDir>
#include <QPainter>
#include <QTimer>

#include <cstdio>

namespace {

constexpr QSize kWindow(1180, 720);

bool Save(const QImage& image, const QString& dir, const char* name) {
    const QString path = QDir(dir).filePath(QString::fromLatin1(name));
    if (image.save(path)) {
        std::printf("wrote %s\n", qPrintable(path));
        return true;
    }
    std::fprintf(stderr, "zeb_guide_shots: cannot write %s\n", qPrintable(path));
    return false;
}

QImage Grab(QWidget* w) {
    QApplication::processEvents();
    return w->grab().toImage();
}

void Trigger(TForm1* form, const char* action) {
    if (auto* a = form->findChild<QAction*>(QLatin1String(action))) a->trigger();
    else std::fprintf(stderr, "zeb_guide_shots: no action %s\n", action);
    QApplication::processEvents();
}

// A switch of the Graph menu on, whatever it was.
void SwitchOn(TForm1* form, const char* action) {
    auto* a = form->findChild<QAction*>(QLatin1String(action));
    if (a && !a->isChecked()) Trigger(form, action);
}

// A window's picture with a title bar, a frame and a shadow, as a desktop would show it.
void DrawFloating(QPainter& p, const QImage& content, QPoint at, const QString& title) {
    constexpr int kBar = 26;
    const QRect frame(at, QSize(content.width() + 2, content.height() + kBar + 1));
    for (int i = 6; i > 0; --i)
        p.fillRect(frame.translated(i, i), QColor(0, 0, 0, 14));
    p.fillRect(frame, QColor(0x3b, 0x4a, 0x5e));
    p.setPen(Qt::white);
    QFont font = p.font();
    font.setBold(true);
    p.setFont(font);
    p.drawText(QRect(frame.left() + 10, frame.top(), frame.width() - 20, kBar), Qt::AlignVCenter, title);
    p.drawImage(frame.left() + 1, frame.top() + kBar, content);
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 3 && argc != 4) {
        std::fputs("usage: zeb_guide_shots FILE OUTDIR [FOLDER]\n", stderr);
        return 2;
    }
    const QString outDir = QString::fromLocal8Bit(argv[2]);
    const QString folder = argc == 4 ? QString::fromLocal8Bit(argv[3]) : QString();
    // The viewer sees only the recording on its command line.
    char* viewerArgv[] = {argv[0], argv[1], nullptr};
    int failures = 0;
    const int code = zeb::RunViewer(2, viewerArgv, [&](zeb::TStartupStep step, TForm1* form) {
        if (step != zeb::TStartupStep::EventLoopStarted) return;
        form->resize(kWindow);
        QObject::connect(form, &TForm1::loadFinished, form, [&failures, form, outDir, folder](TLoadReport result) {
            if (result != TLoadReport::ResultOk) {
                std::fprintf(stderr, "zeb_guide_shots: the recording did not load (%d)\n", int(result));
                ++failures;
                QTimer::singleShot(0, form, &QWidget::close);
                return;
            }
            // Once the window has laid itself out with the recording in it.
            QTimer::singleShot(300, form, [&failures, form, outDir, folder] {
                form->resize(kWindow);
                SwitchOn(form, "menGraphCursor1");
                SwitchOn(form, "menGraphCursor2");
                const QImage chart = Grab(form);
                failures += !Save(chart, outDir, "window-chart.png");

                Trigger(form, "menViewTable");
                failures += !Save(Grab(form), outDir, "window-table.png");
                Trigger(form, "menViewCfg");
                failures += !Save(Grab(form), outDir, "window-config.png");
                Trigger(form, "menViewGraph");
                // The chart editor beside the chart, on its titles and then its axes.
                Trigger(form, "menGraphExtended");
                failures += !Save(Grab(form), outDir, "window-editor.png");
                if (auto* tabs = form->findChild<QTabWidget*>(QStringLiteral("pclGraphEditor"))) tabs->setCurrentIndex(1);
                failures += !Save(Grab(form), outDir, "window-editor-axes.png");
                if (auto* ok = form->findChild<QPushButton*>(QStringLiteral("btnGraphEditorOK"))) ok->click();

                Trigger(form, "menGraphFuncCalc");
                Trigger(form, "menGraphFuncLimit");
                Trigger(form, "menGraphFFT");
                QWidget* calc = form->ViewCalc();
                QWidget* limit = form->ViewLimit();
                QWidget* fft = form->ViewFFT();
                if (!calc->isVisible() || !limit->isVisible() || !fft || !fft->isVisible()) {
                    std::fputs("zeb_guide_shots: an analysis view did not open\n", stderr);
                    ++failures;
                } else {
                    // The two views side by side, tall enough for every row.
                    calc->resize(470, 372);
                    limit->resize(470, 212);
                    const QImage c = Grab(calc), l = Grab(limit);
                    constexpr int kMargin = 24;
                    QImage views(c.width() + l.width() + 3 * kMargin + 8, c.height() + 2 * kMargin + 34,
                                 QImage::Format_RGB32);
                    views.fill(QColor(0xe4, 0xe9, 0xf0));
                    QPainter p(&views);
                    DrawFloating(p, c, {kMargin, kMargin}, calc->windowTitle());
                    DrawFloating(p, l, {2 * kMargin + c.width() + 2, kMargin}, limit->windowTitle());
                    p.end();
                    failures += !Save(views, outDir, "window-analyses.png");
                    fft->resize(900, 560);
                    for (const char* box : {"chkLog", "chkPeak"})
                        if (auto* b = fft->findChild<QCheckBox*>(QLatin1String(box))) b->setChecked(true);
                    if (auto* run = fft->findChild<QPushButton*>(QStringLiteral("btnCalcFFT"))) run->click();
                    failures += !Save(Grab(fft), outDir, "window-fft.png");
                }
                for (QWidget* w : {calc, limit, fft})
                    if (w) w->close();
                if (!folder.isEmpty()) {
                    form->Summarise(RecordingsInFolder(folder));
                    auto* summary = form->findChild<TfrmSummary*>();
                    if (!summary || !summary->isVisible()) {
                        std::fputs("zeb_guide_shots: the summary did not open\n", stderr);
                        ++failures;
                    } else {
                        summary->resize(1180, 420);
                        failures += !Save(Grab(summary), outDir, "window-summary.png");
                        summary->close();
                    }
                }
                // Nothing changed that needs asking about on the way out.
                form->SetModified(false);
                form->close();
            });
        });
    });
    return code != 0 ? code : (failures ? 1 : 0);
}
