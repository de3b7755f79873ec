#include "TolenEffects/SyntaxTypes.h"

#include <cstddef>

namespace Tolen::Effects {

namespace {

#define TOLEN_TEXT(name, value, text, ...) text,
constexpr const char* kClassTexts[] = {TOLEN_SYNTAX_CLASSES(TOLEN_TEXT)};
constexpr const char* kTypeTexts[] = {TOLEN_TYPE_SPECIFIERS(TOLEN_TEXT)};
constexpr const char* kOperatorTexts[] = {TOLEN_OPERATORS(TOLEN_TEXT)};
constexpr const char* kStorageTexts[] = {TOLEN_STORAGE_QUALIFIERS(TOLEN_TEXT)};
#undef TOLEN_TEXT

#define TOLEN_CHANNELS(name, value, text, channels, bytes) channels,
constexpr int kTypeChannels[] = {TOLEN_TYPE_SPECIFIERS(TOLEN_CHANNELS)};
#undef TOLEN_CHANNELS

#define TOLEN_BYTES(name, value, text, channels, bytes) bytes,
constexpr int kTypeBytes[] = {TOLEN_TYPE_SPECIFIERS(TOLEN_BYTES)};
#undef TOLEN_BYTES

/// The entry for @p value, or @p other when the table has none.
template <class T, std::size_t count>
T LookUp(const T (&table)[count], std::int32_t value, T other) {
    return value >= 0 && static_cast<std::size_t>(value) < count ? table[value] : other;
}

} // namespace

const char* ClassToString(Class value) {
    return LookUp(kClassTexts, value, "Unknown");
}

const char* TypeSpecifierToString(TypeSpecifier value) {
    return LookUp(kTypeTexts, value, "UNKNOWN");
}

int TypeSpecifierToCountChannels(TypeSpecifier value) {
    return LookUp(kTypeChannels, value, 0);
}

int TypeSpecifierToSizeInBytes(TypeSpecifier value) {
    return LookUp(kTypeBytes, value, 0);
}

const char* OperatorToString(Operator value) {
    return LookUp(kOperatorTexts, value, "Unknown");
}

const char* StorageQualifierToString(StorageQualifier value) {
    return LookUp(kStorageTexts, value, "Unknown");
}

} // namespace Tolen::Effects
