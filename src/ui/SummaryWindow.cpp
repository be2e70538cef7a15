#include "ui/SummaryWindow.h"

#include "config/Texts.h"
#include "ui/SummaryReport.h"
#include "ui/ZebDlg.h"

#include <QAbstractTableModel>
#include <QApplication>
#include <QCheckBox>
#include <QDir>
#include <QEventLoop>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QProgressDialog>
#include <QPushButton>
#include <QSaveFile>
#include <QSortFilterProxyModel>
#include <QTableView>
#include <QThread>
#include <QVBoxLayout>

#include <atomic>
#include <cmath>

using zeb::TTextId;
using zeb::Txt;

// The rows as a table: the texts to show, and for sorting each cell's number or time.
class TSummaryModel : public QAbstractTableModel {
public:
    static constexpr int kColumns = 18;
    static constexpr int kSortRole = Qt::UserRole;

    explicit TSummaryModel(QObject* parent) : QAbstractTableModel(parent) {}
    void SetRows(const std::vector<TSummaryRow>* rows) {
        beginResetModel();
        FRows = rows;
        FTitles = SummaryColumnTitles();
        endResetModel();
    }
    const TSummaryRow& Row(int r) const { return (*FRows)[size_t(r)]; }

    int rowCount(const QModelIndex& parent = {}) const override {
        return parent.isValid() || !FRows ? 0 : int(FRows->size());
    }
    int columnCount(const QModelIndex& parent = {}) const override { return parent.isValid() ? 0 : kColumns; }
    QVariant headerData(int section, Qt::Orientation o, int role) const override {
        if (o == Qt::Horizontal && role == Qt::DisplayRole) return FTitles.value(section);
        return QAbstractTableModel::headerData(section, o, role);
    }
    QVariant data(const QModelIndex& index, int role) const override {
        if (!index.isValid() || !FRows) return {};
        const TSummaryRow& r = Row(index.row());
        const int c = index.column();
        switch (role) {
        case Qt::DisplayRole:
            return c == 0 ? QFileInfo(r.File).fileName() : SummaryCellText(r, c);
        case Qt::ToolTipRole:
            return c == 0 ? QDir::toNativeSeparators(r.File) : QVariant();
        case Qt::ForegroundRole:
            if (c == 17 && r.HasFigures() && r.Verdict == TSummaryVerdict::Failed) return QColor(190, 0, 0);
            if (c == 1 && r.Status != TSummaryStatus::Ok) return QColor(190, 0, 0);
            return {};
        case Qt::TextAlignmentRole:
            return int((c >= 7 && c <= 16 ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter);
        case kSortRole:
            return SortValue(r, c);
        default:
            return {};
        }
    }

private:
    // Numbers and times sort as numbers; a row without the figure goes last.
    static QVariant SortValue(const TSummaryRow& r, int c) {
        auto number = [](double v) { return std::isnan(v) ? QVariant() : QVariant(v); };
        switch (c) {
        case 1: return int(r.Status);
        case 5: return number(r.First);
        case 6: return number(r.Last);
        case 7: return r.HasFigures() ? QVariant(r.Points) : QVariant();
        case 8: return number(r.Min);
        case 9: return number(r.MinTime);
        case 10: return number(r.Max);
        case 11: return number(r.MaxTime);
        case 12: return number(r.Average);
        case 13: return number(r.Mkt);
        case 14: return r.LimitMode ? number(std::isnan(r.LimitOut) ? 0.0 : r.LimitOut) : QVariant();
        case 15: return r.LimitMode ? QVariant(r.Violations) : QVariant();
        case 16: return number(r.FirstViolation);
        case 17: return r.HasFigures() ? QVariant(int(r.Verdict)) : QVariant();
        default: return SummaryCellText(r, c);
        }
    }

    const std::vector<TSummaryRow>* FRows = nullptr;
    QStringList FTitles;
};

namespace {

// Shows the failed curves alone when asked to.
class TFailedFilter : public QSortFilterProxyModel {
public:
    using QSortFilterProxyModel::QSortFilterProxyModel;
    void SetFailedOnly(bool on) {
        FFailedOnly = on;
        invalidateFilter();
    }

protected:
    bool filterAcceptsRow(int row, const QModelIndex&) const override {
        if (!FFailedOnly) return true;
        const TSummaryRow& r = static_cast<const TSummaryModel*>(sourceModel())->Row(row);
        return r.HasFigures() && r.Verdict == TSummaryVerdict::Failed;
    }
    bool lessThan(const QModelIndex& a, const QModelIndex& b) const override {
        const QVariant x = a.data(TSummaryModel::kSortRole), y = b.data(TSummaryModel::kSortRole);
        if (!x.isValid() || !y.isValid()) return x.isValid() && !y.isValid() ? true : false;
        if (x.typeId() == QMetaType::QString) return QString::localeAwareCompare(x.toString(), y.toString()) < 0;
        return QVariant::compare(x, y) == QPartialOrdering::Less;
    }

private:
    bool FFailedOnly = false;
};

} // namespace

TfrmSummary::TfrmSummary(QWidget* parent) : QDialog(parent) {
    setObjectName(QStringLiteral("frmSummary"));
    setWindowTitle(Txt(TTextId::SumCaption));
    setWindowFlag(Qt::WindowMaximizeButtonHint);
    setSizeGripEnabled(true);

    lblCounts = new QLabel(this);
    lblCounts->setObjectName(QStringLiteral("lblCounts"));
    lblTemplate = new QLabel(this);
    lblTemplate->setObjectName(QStringLiteral("lblTemplate"));
    btnTemplate = new QPushButton(Txt(TTextId::SumChooseTemplate), this);
    btnTemplate->setObjectName(QStringLiteral("btnTemplate"));
    chkFailedOnly = new QCheckBox(Txt(TTextId::SumFailedOnly), this);
    chkFailedOnly->setObjectName(QStringLiteral("chkFailedOnly"));

    FModel = new TSummaryModel(this);
    auto* proxy = new TFailedFilter(this);
    proxy->setSourceModel(FModel);
    proxy->setSortRole(TSummaryModel::kSortRole);
    FProxy = proxy;
    FTable = new QTableView(this);
    FTable->setObjectName(QStringLiteral("tblSummary"));
    FTable->setModel(FProxy);
    FTable->sortByColumn(0, Qt::AscendingOrder);
    FTable->setSortingEnabled(true);
    FTable->setSelectionBehavior(QAbstractItemView::SelectRows);
    FTable->setEditTriggers(QAbstractItemView::NoEditTriggers);
    FTable->setAlternatingRowColors(true);
    FTable->verticalHeader()->setVisible(false);
    FTable->verticalHeader()->setDefaultSectionSize(FTable->fontMetrics().height() + 8);
    FTable->horizontalHeader()->setSectionResizeMode(QHeaderView::Interactive);
    FTable->setToolTip(Txt(TTextId::SumOpenHint));
    connect(FTable, &QTableView::doubleClicked, this, [this](const QModelIndex& index) {
        const QModelIndex source = FProxy->mapToSource(index);
        if (source.isValid()) Q_EMIT openRecording(FModel->Row(source.row()).File);
    });
    connect(chkFailedOnly, &QCheckBox::toggled, this, [proxy](bool on) { proxy->SetFailedOnly(on); });
    connect(btnTemplate, &QPushButton::clicked, this, &TfrmSummary::ChooseTemplate);

    btnPdf = new QPushButton(Txt(TTextId::SumExportPdf), this);
    btnPdf->setObjectName(QStringLiteral("btnPdf"));
    btnCsv = new QPushButton(Txt(TTextId::SumExportCsv), this);
    btnCsv->setObjectName(QStringLiteral("btnCsv"));
    btnClose = new QPushButton(Txt(TTextId::BtnClose), this);
    btnClose->setObjectName(QStringLiteral("btnClose"));
    connect(btnPdf, &QPushButton::clicked, this, &TfrmSummary::ExportPdfClick);
    connect(btnCsv, &QPushButton::clicked, this, &TfrmSummary::ExportCsvClick);
    connect(btnClose, &QPushButton::clicked, this, &QDialog::close);

    auto* top = new QHBoxLayout;
    top->addWidget(lblCounts, 1);
    top->addWidget(chkFailedOnly);
    auto* templ = new QHBoxLayout;
    templ->addWidget(lblTemplate, 1);
    templ->addWidget(btnTemplate);
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(btnPdf);
    buttons->addWidget(btnCsv);
    buttons->addStretch(1);
    buttons->addWidget(btnClose);
    auto* v = new QVBoxLayout(this);
    v->addLayout(top);
    v->addLayout(templ);
    v->addWidget(FTable, 1);
    v->addLayout(buttons);
    resize(1200, 640);
}

TfrmSummary::~TfrmSummary() = default;

std::optional<std::vector<TSummaryRow>> TfrmSummary::Read(const QStringList& files, const TSummaryOptions& options) {
    QProgressDialog progress(Txt(TTextId::SumReading), Txt(TTextId::BtnCancel), 0, int(files.size()), this);
    progress.setObjectName(QStringLiteral("dlgSummaryProgress"));
    progress.setWindowTitle(Txt(TTextId::SumCaption));
    progress.setWindowModality(Qt::WindowModal);
    progress.setMinimumDuration(0);
    progress.setMinimumWidth(460);
    progress.setValue(0);

    std::atomic<bool> cancel = false;
    std::vector<TSummaryRow> rows;
    TSummaryRun run;
    run.Cancel = &cancel;
    run.Progress = [&progress, this](int done, int total, const QString& file) {
        QMetaObject::invokeMethod(this, [&progress, done, total, file] {
            if (file.isEmpty()) return;
            progress.setLabelText(zeb::TxtFmt(TTextId::SumProgress, {QString::number(done + 1), QString::number(total),
                                                                     QFileInfo(file).fileName()}));
            progress.setValue(done);
        });
    };
    QEventLoop loop;
    QThread* worker = QThread::create([&] { rows = run.Run(files, options); });
    connect(worker, &QThread::finished, &loop, &QEventLoop::quit);
    connect(&progress, &QProgressDialog::canceled, this, [&cancel] { cancel = true; });
    worker->start();
    loop.exec();
    worker->wait();
    delete worker;
    QCoreApplication::sendPostedEvents(this); // the last progress reports refer to this frame
    if (cancel) return std::nullopt;
    return rows;
}

bool TfrmSummary::Summarise(const QStringList& files, const TSummaryOptions& options) {
    auto rows = Read(files, options);
    if (!rows) return false;
    FFiles = files;
    FOptions = options;
    FRows = std::move(*rows);
    ShowRows();
    return true;
}

void TfrmSummary::ShowRows() {
    FModel->SetRows(&FRows);
    const TSummaryCounts c = CountSummary(FRows);
    QString counts = zeb::TxtFmt(TTextId::SumCounts, {QString::number(c.Recordings), QString::number(c.Passed),
                                                      QString::number(c.Failed), QString::number(c.NoLimits)});
    if (c.Incomplete > 0) counts += QStringLiteral("  \u2013  ") + zeb::TxtFmt(TTextId::SumIncomplete, {QString::number(c.Incomplete)});
    lblCounts->setText(counts);
    lblTemplate->setText(FOptions.Template.isEmpty()
                             ? Txt(TTextId::SumOwnTemplates)
                             : zeb::TxtFmt(TTextId::SumOneTemplate, {QDir::toNativeSeparators(FOptions.Template)}));
    FTable->resizeColumnsToContents();
    for (int col = 0; col < TSummaryModel::kColumns; ++col)
        FTable->setColumnWidth(col, std::min(FTable->columnWidth(col), 260));
}

void TfrmSummary::ChooseTemplate() {
    QString file;
    if (!zeb::TZebDlg::OpenMseFile(Txt(TTextId::SumChooseTemplate).remove(QLatin1Char('&')), QString(), file)) return;
    TSummaryOptions options = FOptions;
    options.Template = file;
    Summarise(FFiles, options);
}

bool TfrmSummary::ExportPdf(const QString& fileName) {
    if (WriteSummaryPdf(FRows, FOptions, fileName)) return true;
    zeb::TZebDlg::ShowErrMsg(zeb::TxtFmt(TTextId::SumCannotWrite, {QDir::toNativeSeparators(fileName)}));
    return false;
}

bool TfrmSummary::ExportCsv(const QString& fileName) {
    QSaveFile out(fileName);
    if (out.open(QIODevice::WriteOnly) && WriteSummaryCsv(out, FRows) && out.commit()) return true;
    zeb::TZebDlg::ShowErrMsg(zeb::TxtFmt(TTextId::SumCannotWrite, {QDir::toNativeSeparators(fileName)}));
    return false;
}

void TfrmSummary::ExportPdfClick() {
    QString fileName;
    const QString filter = zeb::TZebDlg::BuildFilter(Txt(TTextId::ReportPdfFilter), QStringLiteral(".pdf"));
    if (zeb::TZebDlg::SaveFile(Txt(TTextId::SumExportPdf).remove(QLatin1Char('&')), QString(), filter,
                               QStringLiteral(".pdf"), fileName)) {
        QApplication::setOverrideCursor(Qt::WaitCursor);
        ExportPdf(fileName);
        QApplication::restoreOverrideCursor();
    }
}

void TfrmSummary::ExportCsvClick() {
    QString fileName;
    const QString filter = zeb::TZebDlg::BuildFilter(Txt(TTextId::SumCsvFilter), QStringLiteral(".csv"));
    if (zeb::TZebDlg::SaveFile(Txt(TTextId::SumExportCsv).remove(QLatin1Char('&')), QString(), filter,
                               QStringLiteral(".csv"), fileName))
        ExportCsv(fileName);
}
