// Text between the editor's bytes and Qt's strings, through the Windows-1252 code page of COG
// scripts (editor/charset.h).
#pragma once

#include "editor/charset.h"

#include <QByteArray>
#include <QString>

#include <optional>
#include <string_view>

namespace codepage {

inline QString toText(std::string_view bytes) {
    const std::u16string text = editor::decode(bytes);
    return QString::fromUtf16(text.data(), static_cast<qsizetype>(text.size()));
}

inline QString toText(const QByteArray& bytes) {
    return toText(std::string_view(bytes.constData(), static_cast<std::size_t>(bytes.size())));
}

// The bytes of text; nothing when it holds a character the code page cannot hold, which is then
// named in refused.
inline std::optional<QByteArray> toBytes(const QString& text, QString* refused = nullptr) {
    const editor::Encoded e = editor::encode(std::u16string_view(
        reinterpret_cast<const char16_t*>(text.utf16()), static_cast<std::size_t>(text.size())));
    if (!e.refused) return QByteArray::fromStdString(e.bytes);
    if (refused) {
        const auto at = static_cast<qsizetype>(*e.refused);
        *refused = text.mid(at, text[at].isHighSurrogate() ? 2 : 1);
    }
    return std::nullopt;
}

} // namespace codepage
