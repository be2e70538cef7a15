// Fuzzes the INI reader with the display template on top: the bytes are read as a template,
// loaded into an empty template and applied to a recording's curves, then saved into the same
// file content and read back. Nothing may crash, and what was saved must read back as it was
// written and save to the same bytes again. (Writing every value, set or not, adds only the
// defaults to what the saves here write, at a third of the time; the tests cover it.)

#include "config/IniFile.h"
#include "config/MseSettings.h"

#include <cstdint>
#include <cstdio>

namespace {

// The set values of a template, as a fresh file would hold them.
QByteArray SetValues(const TMseSettings& mse) {
    TIniFile ini;
    mse.Write(ini, false);
    return ini.ToBytes();
}

void Check(bool ok) {
    if (!ok) __builtin_trap();
}

// The two texts that should have been equal, for whoever reproduces a finding.
void CheckSame(const QByteArray& a, const QByteArray& b) {
    if (a == b) return;
    std::fprintf(stderr, "--- expected\n%s\n--- got\n%s\n", a.toPercentEncoding(" []='\r\n").constData(),
                 b.toPercentEncoding(" []='\r\n").constData());
    __builtin_trap();
}

} // namespace

// Speed and flat memory over detail while fuzzing: where a block was allocated and freed is
// kept two calls deep, and freed memory waits in a smaller quarantine. A finding is run again
// with ASAN_OPTIONS=malloc_context_size=30 for the whole story.
extern "C" const char* __asan_default_options() {
    return "malloc_context_size=2:quarantine_size_mb=64";
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const QByteArray bytes(reinterpret_cast<const char*>(data), qsizetype(size));
    TIniFile ini;
    ini.LoadFromBytes(bytes);
    Check(ini.Sections().size() <= bytes.count('['));

    // Loaded into an empty template.
    TMseSettings loaded;
    loaded.Read(ini);
    Check(loaded.Curves.Count() <= ini.Sections().size());

    // Applied to the curves of a recording: the list keeps its length.
    TMseSettings applied;
    for (const char* channel : {"T1", "T1", "T2"}) {
        TMseSettingsCurve& c = applied.Curves.Add();
        c.sModulName.Set(QStringLiteral("M%1").arg(applied.Curves.Count()));
        c.sChannelName.Set(QString::fromLatin1(channel));
    }
    applied.Read(ini);
    Check(applied.Curves.Count() == 3);

    // Saved into what the file held, read back, saved again.
    TIniFile saved = ini;
    loaded.Write(saved, false);
    const QByteArray first = saved.ToBytes();
    TIniFile back;
    back.LoadFromBytes(first);
    TMseSettings reread;
    reread.Read(back);
    CheckSame(SetValues(loaded), SetValues(reread));
    reread.Write(back, false);
    CheckSame(first, back.ToBytes());
    return 0;
}
