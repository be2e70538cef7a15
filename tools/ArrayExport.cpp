#include "ArrayExport.h"

#include <QByteArray>
#include <QFile>

#include <algorithm>
#include <cstdint>

#ifdef ZEB_HAVE_MATIO
#include <matio.h>
#endif
#ifdef ZEB_HAVE_HDF5
#include <hdf5.h>
#endif

namespace {

constexpr const char* kEpoch = "2000-01-01 00:00:00";

#ifdef ZEB_HAVE_MATIO
// A MATLAB text: a 1xN char array of UTF-16 code units.
matvar_t* MatText(const char* name, const QString& text) {
    std::vector<std::uint16_t> units(text.utf16(), text.utf16() + text.size());
    size_t dims[2] = {1, units.size()};
    return Mat_VarCreate(name, MAT_C_CHAR, MAT_T_UINT16, 2, dims, units.data(), 0);
}

// A column that refers to the caller's data, which must outlive the variable's writing.
matvar_t* MatColumn(const std::vector<double>& column) {
    size_t dims[2] = {column.size(), 1};
    return Mat_VarCreate(nullptr, MAT_C_DOUBLE, MAT_T_DOUBLE, 2, dims, const_cast<double*>(column.data()),
                         MAT_F_DONT_COPY_DATA);
}

matvar_t* MatRow(std::vector<double> row) {
    size_t dims[2] = {1, row.size()};
    return Mat_VarCreate(nullptr, MAT_C_DOUBLE, MAT_T_DOUBLE, 2, dims, row.data(), 0);
}

bool WriteMatlab(const QString& path, const QString& source, const std::vector<TArrayChannel>& channels) {
    // Version 5 keeps a variable below 2 GB; beyond, version 7.3 (HDF5 inside).
    double points = 0.0;
    for (const TArrayChannel& c : channels) points += double(c.Times.size());
    const mat_ft version = 24.0 * points > 1.9e9 ? MAT_FT_MAT73 : MAT_FT_MAT5;
    // Compressed as MATLAB saves, up to a million points; beyond, the library's compression
    // takes minutes where writing takes seconds, so larger windows are written plain.
    const matio_compression compression = points <= 1e6 ? MAT_COMPRESSION_ZLIB : MAT_COMPRESSION_NONE;
    mat_t* mat = Mat_CreateVer(QFile::encodeName(path).constData(), nullptr, version);
    if (!mat) return false;
    bool ok = true;
    auto write = [&](matvar_t* v) {
        ok = ok && v && Mat_VarWrite(mat, v, compression) == 0;
        if (v) Mat_VarFree(v);
    };
    write(MatText("source", source));
    write(MatText("epoch", QString::fromLatin1(kEpoch)));
    const char* fields[] = {"name", "unit", "logger", "time_s", "datenum", "value", "limit_mode", "limits"};
    size_t dims[2] = {1, channels.size()};
    matvar_t* s = Mat_VarCreateStruct("channels", 2, dims, fields, 8);
    // The columns the struct refers to, kept until it is written.
    std::vector<std::vector<double>> datenums(channels.size()), values(channels.size());
    for (size_t k = 0; s && k < channels.size(); ++k) {
        const TArrayChannel& c = channels[k];
        std::vector<double>& datenum = datenums[k];
        std::vector<double>& value = values[k];
        datenum.resize(c.Times.size());
        value.assign(c.Values.begin(), c.Values.end());
        std::transform(c.Times.begin(), c.Times.end(), datenum.begin(), MatlabDatenum);
        Mat_VarSetStructFieldByName(s, "name", k, MatText(nullptr, c.Name));
        Mat_VarSetStructFieldByName(s, "unit", k, MatText(nullptr, c.Unit));
        Mat_VarSetStructFieldByName(s, "logger", k, MatText(nullptr, c.Logger));
        Mat_VarSetStructFieldByName(s, "time_s", k, MatColumn(c.Times));
        Mat_VarSetStructFieldByName(s, "datenum", k, MatColumn(datenum));
        Mat_VarSetStructFieldByName(s, "value", k, MatColumn(value));
        Mat_VarSetStructFieldByName(s, "limit_mode", k, MatRow({double(c.LimitMode)}));
        Mat_VarSetStructFieldByName(s, "limits", k, MatRow({c.L1, c.L2}));
    }
    write(s);
    return Mat_Close(mat) == 0 && ok;
}
#endif

#ifdef ZEB_HAVE_HDF5
// A text attribute as a variable-length UTF-8 string, which readers such as h5py give as text.
bool H5Text(hid_t object, const char* name, const QString& text) {
    const QByteArray utf8 = text.toUtf8();
    const char* value = utf8.constData();
    const hid_t type = H5Tcopy(H5T_C_S1);
    H5Tset_size(type, H5T_VARIABLE);
    H5Tset_cset(type, H5T_CSET_UTF8);
    const hid_t space = H5Screate(H5S_SCALAR);
    const hid_t attr = H5Acreate2(object, name, type, space, H5P_DEFAULT, H5P_DEFAULT);
    const bool ok = attr >= 0 && H5Awrite(attr, type, &value) >= 0;
    if (attr >= 0) H5Aclose(attr);
    H5Sclose(space);
    H5Tclose(type);
    return ok;
}

bool H5Number(hid_t object, const char* name, hid_t fileType, hid_t memType, const void* value) {
    const hid_t space = H5Screate(H5S_SCALAR);
    const hid_t attr = H5Acreate2(object, name, fileType, space, H5P_DEFAULT, H5P_DEFAULT);
    const bool ok = attr >= 0 && H5Awrite(attr, memType, value) >= 0;
    if (attr >= 0) H5Aclose(attr);
    H5Sclose(space);
    return ok;
}

bool H5Column(hid_t group, const char* name, hid_t fileType, hid_t memType, const void* data, size_t n) {
    const hsize_t dims[1] = {hsize_t(n)};
    const hid_t space = H5Screate_simple(1, dims, nullptr);
    const hid_t dcpl = H5Pcreate(H5P_DATASET_CREATE);
    if (n > 0) {
        // Chunks of 64K points, shuffled and deflated: a few bytes a point for smooth signals.
        const hsize_t chunk[1] = {std::min<hsize_t>(hsize_t(n), 65536)};
        H5Pset_chunk(dcpl, 1, chunk);
        H5Pset_shuffle(dcpl);
        H5Pset_deflate(dcpl, 6);
    }
    const hid_t set = H5Dcreate2(group, name, fileType, space, H5P_DEFAULT, dcpl, H5P_DEFAULT);
    const bool ok = set >= 0 && (n == 0 || H5Dwrite(set, memType, H5S_ALL, H5S_ALL, H5P_DEFAULT, data) >= 0);
    if (set >= 0) H5Dclose(set);
    H5Pclose(dcpl);
    H5Sclose(space);
    return ok;
}

bool WriteHdf5(const QString& path, const QString& source, const std::vector<TArrayChannel>& channels) {
    H5Eset_auto2(H5E_DEFAULT, nullptr, nullptr); // failures are answered, not printed
    const hid_t file = H5Fcreate(QFile::encodeName(path).constData(), H5F_ACC_TRUNC, H5P_DEFAULT, H5P_DEFAULT);
    if (file < 0) return false;
    bool ok = H5Text(file, "source", source) && H5Text(file, "epoch", QString::fromLatin1(kEpoch));
    const hid_t all = H5Gcreate2(file, "channels", H5P_DEFAULT, H5P_DEFAULT, H5P_DEFAULT);
    ok = ok && all >= 0;
    for (size_t k = 0; ok && k < channels.size(); ++k) {
        const TArrayChannel& c = channels[k];
        const QByteArray name = QByteArray::number(qulonglong(k)).rightJustified(2, '0');
        const hid_t g = H5Gcreate2(all, name.constData(), H5P_DEFAULT, H5P_DEFAULT, H5P_DEFAULT);
        ok = g >= 0;
        if (!ok) break;
        const std::int32_t mode = c.LimitMode;
        ok = H5Column(g, "time", H5T_IEEE_F64LE, H5T_NATIVE_DOUBLE, c.Times.data(), c.Times.size()) &&
             H5Column(g, "value", H5T_IEEE_F32LE, H5T_NATIVE_FLOAT, c.Values.data(), c.Values.size()) &&
             H5Text(g, "name", c.Name) && H5Text(g, "unit", c.Unit) && H5Text(g, "logger", c.Logger) &&
             H5Number(g, "limit_mode", H5T_STD_I32LE, H5T_NATIVE_INT32, &mode) &&
             H5Number(g, "l1", H5T_IEEE_F64LE, H5T_NATIVE_DOUBLE, &c.L1) &&
             H5Number(g, "l2", H5T_IEEE_F64LE, H5T_NATIVE_DOUBLE, &c.L2);
        H5Gclose(g);
    }
    if (all >= 0) H5Gclose(all);
    return H5Fclose(file) >= 0 && ok;
}
#endif

} // namespace

bool ArrayKindAvailable(TArrayKind kind) {
    switch (kind) {
    case TArrayKind::Matlab:
#ifdef ZEB_HAVE_MATIO
        return true;
#else
        return false;
#endif
    case TArrayKind::Hdf5:
#ifdef ZEB_HAVE_HDF5
        return true;
#else
        return false;
#endif
    }
    return false;
}

bool WriteArrays(TArrayKind kind, const QString& path, const QString& source, const std::vector<TArrayChannel>& channels) {
    QFile::remove(path);
    switch (kind) {
    case TArrayKind::Matlab:
#ifdef ZEB_HAVE_MATIO
        return WriteMatlab(path, source, channels);
#else
        break;
#endif
    case TArrayKind::Hdf5:
#ifdef ZEB_HAVE_HDF5
        return WriteHdf5(path, source, channels);
#else
        break;
#endif
    }
    Q_UNUSED(source);
    Q_UNUSED(channels);
    return false;
}
