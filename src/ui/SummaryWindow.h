#pragma once
// TfrmSummary: the summary of many recordings in a window of its own. The recordings are read
// in the background with a progress dialog ("3 of 40: cellar-07.zeb") and Cancel; the window
// then lists one row per recording and curve, sortable by any column, filtered to the failed
// curves on request, and exports the summary as PDF or CSV. A double click opens the row's
// recording in the viewer.

#include "store/Summary.h"

#include <QDialog>

#include <optional>
#include <vector>

class QCheckBox;
class QLabel;
class QPushButton;
class QSortFilterProxyModel;
class QTableView;
class TSummaryModel;

class TfrmSummary : public QDialog {
    Q_OBJECT
public:
    explicit TfrmSummary(QWidget* parent = nullptr);
    ~TfrmSummary() override;

    // Reads the recordings with a progress dialog and shows their summary; false when the
    // user cancelled the reading (the window then stays as it was).
    bool Summarise(const QStringList& files, const TSummaryOptions& options);

    const std::vector<TSummaryRow>& Rows() const { return FRows; }
    QTableView* Table() const { return FTable; }
    // Writes the shown summary; false (and a message) when the file cannot be written.
    bool ExportPdf(const QString& fileName);
    bool ExportCsv(const QString& fileName);

Q_SIGNALS:
    // A row was double-clicked: the viewer opens its recording.
    void openRecording(const QString& file);

private:
    // Reads in a thread of its own while a progress dialog runs; empty when cancelled.
    std::optional<std::vector<TSummaryRow>> Read(const QStringList& files, const TSummaryOptions& options);
    void ShowRows();
    void ChooseTemplate();
    void ExportPdfClick();
    void ExportCsvClick();

    std::vector<TSummaryRow> FRows;
    QStringList FFiles;
    TSummaryOptions FOptions;
    TSummaryModel* FModel;
    QSortFilterProxyModel* FProxy;
    QTableView* FTable;
    QLabel* lblCounts;
    QLabel* lblTemplate;
    QCheckBox* chkFailedOnly;
    QPushButton* btnTemplate;
    QPushButton* btnPdf;
    QPushButton* btnCsv;
    QPushButton* btnClose;
};
