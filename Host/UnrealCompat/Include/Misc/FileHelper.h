// FFileHelper: whole-file text loading and saving with the engine's encoding rules.
//
// SaveStringToFile with AutoDetect writes single bytes when every character is ASCII and
// UTF-16LE with a byte-order mark otherwise; ForceUTF8 writes a UTF-8 byte-order mark,
// ForceUTF8WithoutBOM does not. LoadFileToString recognises UTF-8 and UTF-16 byte-order marks
// and reads other files as UTF-8 when they are valid UTF-8, else one character per byte.
// SaveArrayToFile and LoadFileToArray move bytes as they are.
#pragma once

#include "Containers/ArrayView.h"
#include "Containers/UnrealString.h"
#include "HAL/FileManager.h"

class FFileHelper
{
public:
	enum class EHashOptions
	{
		None = 0,
		EnableVerify = 1 << 0,
		ErrorMissingHash = 1 << 1,
	};

	enum class EEncodingOptions
	{
		AutoDetect,
		ForceAnsi,
		ForceUnicode,
		ForceUTF8,
		ForceUTF8WithoutBOM,
	};

	static bool LoadFileToString(FString& Result, const TCHAR* Filename, EHashOptions VerifyFlags = EHashOptions::None, uint32 ReadFlags = 0);
	// Replaces Result with the file's bytes; false, with Result untouched, for a missing or
	// unreadable file.
	static bool LoadFileToArray(TArray<uint8>& Result, const TCHAR* Filename, uint32 Flags = 0);
	// The host writes through the C++ library; the file manager argument only decides where
	// missing folders are made, as the engine's writer does before it opens the file.
	static bool SaveStringToFile(FStringView String, const TCHAR* Filename, EEncodingOptions EncodingOptions = EEncodingOptions::AutoDetect,
		IFileManager* FileManager = &IFileManager::Get(), uint32 WriteFlags = 0);
	// Replaces the file (missing folders are made, a read-only file refuses unless
	// FILEWRITE_EvenIfReadOnly); false when it cannot be written.
	static bool SaveArrayToFile(TArrayView64<const uint8> Array, const TCHAR* Filename,
		IFileManager* FileManager = &IFileManager::Get(), uint32 WriteFlags = 0);
};
