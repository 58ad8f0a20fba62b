// The language of the texts.
#pragma once

#include <QString>

#include "qrvel/base/keyed_texts.h"

namespace qrvel {

struct Language {
    QString name;  // as in the text file's name: "de", "de_AT"; empty for English, which needs no file
    KeyedTexts texts;
};

}  // namespace qrvel
