// The cutter's MATLAB and HDF5 outputs, read back with the libraries' own read side: every
// stamp and value of the window as the viewer loads the recording, gaps as NaN, non-finite
// values as they are, with the channels' descriptions and limits.

#include "Cutter.h"
#include "LoadRecording.h"
#include "MakeRecording.h"
#include "analysis/Analysis.h"

#include <QTemporaryDir>
#include <QTest>

#include <cmath>
#include <cstring>

#ifdef ZEB_HAVE_MATIO
#include <matio.h>
#endif
#ifdef ZEB_HAVE_HDF5
#include <hdf5.h>
#endif

using namespace Qt::StringLiterals;

namespace {

// What a reader found for one channel.
struct TRead {
    QString Name, Unit, Logger;
    double Mode = 0, L1 = 0, L2 = 0;
    std::vector<double> Times, Datenums, Values;
};

bool SameValue(double a, double b) { return (std::isnan(a) && std::isnan(b)) || a == b; }

#ifdef ZEB_HAVE_MATIO
QString MatString(matvar_t* v) {
    if (!v || v->class_type != MAT_C_CHAR) return u"<not text>"_s;
    const size_t n = v->nbytes / v->data_size;
    if (v->data_type == MAT_T_UINT16 || v->data_type == MAT_T_UTF16)
        return QString::fromUtf16(static_cast<const char16_t*>(v->data), qsizetype(n));
    return QString::fromUtf8(static_cast<const char*>(v->data), qsizetype(n));
}
std::vector<double> MatDoubles(matvar_t* v) {
    if (!v || v->class_type != MAT_C_DOUBLE) return {};
    const double* p = static_cast<const double*>(v->data);
    return std::vector<double>(p, p + v->nbytes / sizeof(double));
}
std::vector<TRead> ReadMat(const QString& path, QString& source, QString& epoch) {
    std::vector<TRead> out;
    mat_t* mat = Mat_Open(QFile::encodeName(path).constData(), MAT_ACC_RDONLY);
    if (!mat) return out;
    matvar_t* s = Mat_VarRead(mat, "source");
    source = MatString(s);
    Mat_VarFree(s);
    matvar_t* e = Mat_VarRead(mat, "epoch");
    epoch = MatString(e);
    Mat_VarFree(e);
    matvar_t* ch = Mat_VarRead(mat, "channels");
    if (ch && ch->class_type == MAT_C_STRUCT && ch->rank == 2 && ch->dims[0] == 1) {
        for (size_t k = 0; k < ch->dims[1]; ++k) {
            TRead r;
            r.Name = MatString(Mat_VarGetStructFieldByName(ch, "name", k));
            r.Unit = MatString(Mat_VarGetStructFieldByName(ch, "unit", k));
            r.Logger = MatString(Mat_VarGetStructFieldByName(ch, "logger", k));
            r.Times = MatDoubles(Mat_VarGetStructFieldByName(ch, "time_s", k));
            r.Datenums = MatDoubles(Mat_VarGetStructFieldByName(ch, "datenum", k));
            r.Values = MatDoubles(Mat_VarGetStructFieldByName(ch, "value", k));
            r.Mode = MatDoubles(Mat_VarGetStructFieldByName(ch, "limit_mode", k)).at(0);
            const std::vector<double> limits = MatDoubles(Mat_VarGetStructFieldByName(ch, "limits", k));
            r.L1 = limits.at(0);
            r.L2 = limits.at(1);
            out.push_back(std::move(r));
        }
    }
    Mat_VarFree(ch);
    Mat_Close(mat);
    return out;
}
#endif

#ifdef ZEB_HAVE_HDF5
QString H5String(hid_t object, const char* name) {
    const hid_t a = H5Aopen(object, name, H5P_DEFAULT);
    if (a < 0) return u"<missing>"_s;
    const hid_t t = H5Aget_type(a);
    QString text = u"<not a variable-length text>"_s;
    if (H5Tis_variable_str(t) > 0 && H5Tget_cset(t) == H5T_CSET_UTF8) {
        char* value = nullptr;
        H5Aread(a, t, &value);
        text = QString::fromUtf8(value);
        H5free_memory(value);
    }
    H5Tclose(t);
    H5Aclose(a);
    return text;
}
double H5Double(hid_t object, const char* name) {
    double v = NAN;
    const hid_t a = H5Aopen(object, name, H5P_DEFAULT);
    if (a >= 0) H5Aread(a, H5T_NATIVE_DOUBLE, &v);
    if (a >= 0) H5Aclose(a);
    return v;
}
std::vector<double> H5Doubles(hid_t group, const char* name) {
    const hid_t d = H5Dopen2(group, name, H5P_DEFAULT);
    if (d < 0) return {};
    const hid_t space = H5Dget_space(d);
    std::vector<double> v(size_t(H5Sget_simple_extent_npoints(space)));
    if (!v.empty()) H5Dread(d, H5T_NATIVE_DOUBLE, H5S_ALL, H5S_ALL, H5P_DEFAULT, v.data());
    H5Sclose(space);
    H5Dclose(d);
    return v;
}
std::vector<TRead> ReadH5(const QString& path, QString& source, QString& epoch) {
    std::vector<TRead> out;
    const hid_t f = H5Fopen(QFile::encodeName(path).constData(), H5F_ACC_RDONLY, H5P_DEFAULT);
    if (f < 0) return out;
    source = H5String(f, "source");
    epoch = H5String(f, "epoch");
    for (int k = 0;; ++k) {
        const QByteArray name = "channels/" + QByteArray::number(k).rightJustified(2, '0');
        if (H5Lexists(f, "channels", H5P_DEFAULT) <= 0 || H5Lexists(f, name.constData(), H5P_DEFAULT) <= 0) break;
        const hid_t g = H5Gopen2(f, name.constData(), H5P_DEFAULT);
        TRead r;
        r.Name = H5String(g, "name");
        r.Unit = H5String(g, "unit");
        r.Logger = H5String(g, "logger");
        r.Mode = H5Double(g, "limit_mode");
        r.L1 = H5Double(g, "l1");
        r.L2 = H5Double(g, "l2");
        r.Times = H5Doubles(g, "time");
        r.Values = H5Doubles(g, "value");
        for (double t : r.Times) r.Datenums.push_back(MatlabDatenum(t));
        H5Gclose(g);
        out.push_back(std::move(r));
    }
    H5Fclose(f);
    return out;
}
#endif

} // namespace

class TstArrays : public QObject {
    Q_OBJECT
    QTemporaryDir FDir;
    QString FSource;

private Q_SLOTS:
    void initTestCase() {
        FSource = FDir.filePath(u"source.zeb"_s);
        QVERIFY(MakeRecording(FSource, {.channels = 4, .records = 6000, .missingRate = 0.03, .gapRate = 0.01,
                                        .oddRate = 0.01}));
    }

    void windowReadsBack_data() {
        QTest::addColumn<int>("kind");
        QTest::newRow("MATLAB") << int(TArrayKind::Matlab);
        QTest::newRow("HDF5") << int(TArrayKind::Hdf5);
    }
    void windowReadsBack() {
        QFETCH(int, kind);
        if (!ArrayKindAvailable(TArrayKind(kind))) QSKIP("this build has not got the library");
        const auto db = LoadRecording(FSource);
        double first = 0.0, last = 0.0;
        db->GetXMinXMax(first, last, false);
        TCutRequest req;
        req.Source = FSource;
        req.Target = FDir.filePath(kind == int(TArrayKind::Matlab) ? u"window.mat"_s : u"window.h5"_s);
        req.Start = first + 3600.0;
        req.End = first + 40000.5;
        req.Channels = {0, 2, 3};
        req.Arrays = TArrayKind(kind);
        TCutter cutter(req);
        QCOMPARE(cutter.Run(), TCutResult::Ok);

        QString source, epoch;
        std::vector<TRead> read;
#ifdef ZEB_HAVE_MATIO
        if (kind == int(TArrayKind::Matlab)) read = ReadMat(req.Target, source, epoch);
#endif
#ifdef ZEB_HAVE_HDF5
        if (kind == int(TArrayKind::Hdf5)) read = ReadH5(req.Target, source, epoch);
#endif
        QCOMPARE(source, u"source.zeb"_s);
        QCOMPARE(epoch, u"2000-01-01 00:00:00"_s);
        QCOMPARE(read.size(), size_t(3));
        qint64 gaps = 0, odd = 0;
        for (size_t k = 0; k < read.size(); ++k) {
            const int c = req.Channels[k];
            const TCurveData& d = db->Data(c);
            const TMseSettingsCurve& s = db->Settings().Curves[c];
            QCOMPARE(read[k].Name, s.sChannelName.Value);
            QCOMPARE(read[k].Unit, s.sUnit);
            QCOMPARE(read[k].Logger, s.sLoggername);
            QCOMPARE(read[k].Mode, double(s.LAlarm));
            QCOMPARE(read[k].L1, s.LAlarm ? s.LValue1 : 0.0);
            QCOMPARE(read[k].L2, s.LAlarm ? s.LValue2 : 0.0);
            const TIndexRange range = VisibleRange(d, req.Start, req.End);
            QCOMPARE(qint64(read[k].Times.size()), range.Last - range.First + 1);
            QCOMPARE(read[k].Values.size(), read[k].Times.size());
            for (qint64 i = range.First; i <= range.Last; ++i) {
                const size_t j = size_t(i - range.First);
                QCOMPARE(read[k].Times[j], d.Time(i));
                QCOMPARE(read[k].Datenums[j], MatlabDatenum(d.Time(i)));
                const double expected = d.IsGap(i) ? NAN : d.Value(i);
                gaps += d.IsGap(i);
                odd += !d.IsGap(i) && !std::isfinite(d.Value(i));
                QVERIFY2(SameValue(read[k].Values[j], expected), qPrintable(QString::number(i)));
            }
        }
        QVERIFY(gaps > 0 && odd > 0); // the window holds what the formats must carry
    }

    // A channel the recording has not got, and the same exit codes as every cut.
    void badChannel() {
        for (TArrayKind kind : {TArrayKind::Matlab, TArrayKind::Hdf5}) {
            if (!ArrayKindAvailable(kind)) continue;
            TCutRequest req;
            req.Source = FSource;
            req.Target = FDir.filePath(u"bad.out"_s);
            req.Channels = {1, 7};
            req.Arrays = kind;
            TCutter cutter(req);
            QCOMPARE(cutter.Run(), TCutResult::BadArgument);
            QVERIFY(!QFile::exists(req.Target));
        }
    }
};

QTEST_MAIN(TstArrays)
#include "tst_arrays.moc"
