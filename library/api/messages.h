// How a call of the library ends, in every language.
#pragma once

#include "library/text/messages.h"

namespace exportifc::api::texts {

using namespace exportifc::texts;  // NOLINT(google-build-using-namespace): one table to its users

inline constexpr Text resultOk{"done", "feito"};
inline constexpr Text resultProblems{"the model has problems with which no file is written",
                                     "o modelo tem problemas com os quais nada é gravado"};
inline constexpr Text resultBadUse{
    "wrong use: no model, or one that is closed, unreadable or in use; no text or no function",
    "uso incorreto: sem modelo, ou com um fechado, ilegível ou em uso; sem texto ou sem função"};
inline constexpr Text resultUnreadable{"the model cannot be read", "não foi possível ler o modelo"};
inline constexpr Text resultNotWritten{"the output took no more bytes",
                                       "a saída não aceitou mais bytes"};
inline constexpr Text resultNoMemory{"not enough memory", "memória insuficiente"};
inline constexpr Text resultCancelled{"cancelled", "cancelado"};
inline constexpr Text resultUnknown{"no result of this library",
                                    "nenhum resultado desta biblioteca"};
inline constexpr Text isTheModel{"it is the model itself", "é o próprio modelo"};

}  // namespace exportifc::api::texts
