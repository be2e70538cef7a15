#pragma once
// The user's language as the settings dialog stores it, in the settings file that
// ZEB_SETTINGS_FILE names.

#include "config/ZebReg.h"

inline bool WriteLanguageSetting(int language) {
    TZEBRegistry reg;
    if (!reg.OpenKeyWrite(QString())) return false;
    reg.WriteI(QStringLiteral("Language"), language);
    return reg.Flush();
}
