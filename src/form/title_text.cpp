#include "form/title_text.h"

const WCHAR* TitleText(bool dirty) {
    return dirty ? TEXT("Veldrane VM — Configuration *") : TEXT("Veldrane VM — Configuration");
}

ConfigLine ConfigLineText(WideView config_path, bool dirty) {
    ConfigLine line(config_path.empty() ? WideView(TEXT("Nouvelle configuration — non enregistrée"))
                                        : config_path);
    if (dirty)
        line += TEXT("  (modifiée)");
    return line;
}
