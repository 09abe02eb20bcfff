// Engine foundation types for the host build. TCHAR is a distinct 16-bit character type, as on
// the engine's Linux platforms, so a narrow literal where the engine wants TEXT() fails to
// compile here too.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <utility>
#include <type_traits>

typedef std::uint8_t uint8;
typedef std::uint16_t uint16;
typedef std::uint32_t uint32;
typedef std::uint64_t uint64;
typedef std::int8_t int8;
typedef std::int16_t int16;
typedef std::int32_t int32;
typedef std::int64_t int64;
typedef char ANSICHAR;
typedef char16_t WIDECHAR;
typedef char16_t TCHAR;
typedef char8_t UTF8CHAR;
typedef std::size_t SIZE_T;
typedef std::ptrdiff_t PTRINT;
typedef std::size_t UPTRINT;

#define TEXT_PASTE(x) u##x
#define TEXT(x) TEXT_PASTE(x)

#define FORCEINLINE inline
#define FORCENOINLINE __attribute__((noinline))
#define UE_ARRAY_COUNT(Array) (sizeof(Array) / sizeof((Array)[0]))

enum
{
	INDEX_NONE = -1
};

enum EForceInit
{
	ForceInit,
	ForceInitToZero
};

// Marks what the compat layer offers the host (its main loop, its tests) but the engine does not
// have. The plug-in's own files build with ZORVEK_COMPAT_FENCE, which turns every use of such a
// member into a compile error, so code that compiles here but not in the editor cannot slip in.
#if defined(ZORVEK_COMPAT_FENCE)
#define UE_COMPAT_HOST_ONLY [[deprecated("host-only compat member: the engine has no such thing")]]
#else
#define UE_COMPAT_HOST_ONLY
#endif

// Export macros of the engine's module system mean nothing in a static host build.
#define CORE_API
#define COREUOBJECT_API
#define JSON_API
#define HTTPSERVER_API
#define SOCKETS_API
#define ZORVEKMCPBRIDGE_API

[[noreturn]] void UECompatCheckFailed(const char* Expression, const char* File, int Line);
bool UECompatEnsureFailed(const char* Expression, const char* File, int Line);

#define check(Expression) do { if (!(Expression)) { UECompatCheckFailed(#Expression, __FILE__, __LINE__); } } while (false)
#define checkf(Expression, ...) check(Expression)
#define checkNoEntry() UECompatCheckFailed("checkNoEntry", __FILE__, __LINE__)
#define ensure(Expression) ((Expression) || UECompatEnsureFailed(#Expression, __FILE__, __LINE__))
#define ensureMsgf(Expression, ...) ensure(Expression)
#define verify(Expression) check(Expression)

template <typename T>
FORCEINLINE typename std::remove_reference<T>::type&& MoveTemp(T&& Value)
{
	return static_cast<typename std::remove_reference<T>::type&&>(Value);
}

template <typename T>
FORCEINLINE T&& Forward(typename std::remove_reference<T>::type& Value)
{
	return static_cast<T&&>(Value);
}

template <typename T>
FORCEINLINE T&& Forward(typename std::remove_reference<T>::type&& Value)
{
	return static_cast<T&&>(Value);
}

#define ENUM_CLASS_FLAGS(Enum) \
	inline constexpr Enum& operator|=(Enum& Lhs, Enum Rhs) { return Lhs = (Enum)((std::underlying_type_t<Enum>)Lhs | (std::underlying_type_t<Enum>)Rhs); } \
	inline constexpr Enum& operator&=(Enum& Lhs, Enum Rhs) { return Lhs = (Enum)((std::underlying_type_t<Enum>)Lhs & (std::underlying_type_t<Enum>)Rhs); } \
	inline constexpr Enum operator|(Enum Lhs, Enum Rhs) { return (Enum)((std::underlying_type_t<Enum>)Lhs | (std::underlying_type_t<Enum>)Rhs); } \
	inline constexpr Enum operator&(Enum Lhs, Enum Rhs) { return (Enum)((std::underlying_type_t<Enum>)Lhs & (std::underlying_type_t<Enum>)Rhs); } \
	inline constexpr bool operator!(Enum E) { return !(std::underlying_type_t<Enum>)E; } \
	inline constexpr Enum operator~(Enum E) { return (Enum)~(std::underlying_type_t<Enum>)E; }

template <typename Enum>
constexpr bool EnumHasAnyFlags(Enum Flags, Enum Contains)
{
	return ((std::underlying_type_t<Enum>)Flags & (std::underlying_type_t<Enum>)Contains) != 0;
}

template <typename Enum>
constexpr bool EnumHasAllFlags(Enum Flags, Enum Contains)
{
	return ((std::underlying_type_t<Enum>)Flags & (std::underlying_type_t<Enum>)Contains) == (std::underlying_type_t<Enum>)Contains;
}
