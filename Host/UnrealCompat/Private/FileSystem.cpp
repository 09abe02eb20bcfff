// The host's IFileManager and FFileHelper over std::filesystem.
#include "HAL/FileManager.h"
#include "Misc/FileHelper.h"
#include "Misc/Paths.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <system_error>

namespace
{
	std::filesystem::path ToPath(const TCHAR* Filename)
	{
		return std::filesystem::path(UECompatToUtf8(FStringView(Filename)));
	}

	bool IsRegularFile(const std::filesystem::path& Path)
	{
		std::error_code Error;
		return std::filesystem::is_regular_file(Path, Error);
	}

	// Windows keeps a read-only attribute; here it is a file its owner may not write.
	bool IsReadOnlyFile(const std::filesystem::path& Path)
	{
		std::error_code Error;
		const std::filesystem::file_status Status = std::filesystem::status(Path, Error);
		return !Error && std::filesystem::is_regular_file(Status) && (Status.permissions() & std::filesystem::perms::owner_write) == std::filesystem::perms::none;
	}

	bool ClearReadOnly(const std::filesystem::path& Path)
	{
		std::error_code Error;
		std::filesystem::permissions(Path, std::filesystem::perms::owner_write, std::filesystem::perm_options::add, Error);
		return !Error;
	}

	bool ReadAllBytes(const std::filesystem::path& Path, std::string& OutBytes)
	{
		if (!IsRegularFile(Path))
		{
			return false;
		}
		std::ifstream File(Path, std::ios::binary);
		if (!File)
		{
			return false;
		}
		OutBytes.assign(std::istreambuf_iterator<char>(File), std::istreambuf_iterator<char>());
		return !File.bad();
	}

	bool WriteAllBytes(const std::filesystem::path& Path, const std::string& Bytes, bool bAppend)
	{
		std::ofstream File(Path, std::ios::binary | (bAppend ? std::ios::app : std::ios::trunc));
		if (!File)
		{
			return false;
		}
		File.write(Bytes.data(), (std::streamsize)Bytes.size());
		File.close();
		return !File.fail();
	}

	class FHostFileManager : public IFileManager
	{
	public:
		bool Delete(const TCHAR* Filename, bool RequireExists, bool EvenReadOnly, bool Quiet) override
		{
			const std::filesystem::path Path = ToPath(Filename);
			if (!IsRegularFile(Path))
			{
				return !RequireExists;
			}
			if (IsReadOnlyFile(Path))
			{
				if (!EvenReadOnly)
				{
					return false;
				}
				ClearReadOnly(Path);
			}
			std::error_code Error;
			return std::filesystem::remove(Path, Error) && !Error;
		}

		uint32 Copy(const TCHAR* Dest, const TCHAR* Src, bool Replace, bool EvenIfReadOnly, bool Attributes,
			FCopyProgress* Progress, EFileRead ReadFlags, EFileWrite WriteFlags) override
		{
			const std::filesystem::path SourcePath = ToPath(Src);
			const std::filesystem::path DestPath = ToPath(Dest);
			std::string Bytes;
			if (!ReadAllBytes(SourcePath, Bytes))
			{
				return COPY_Fail;
			}
			if (IsRegularFile(DestPath))
			{
				if (!Replace)
				{
					return COPY_Fail;
				}
				if (IsReadOnlyFile(DestPath))
				{
					if (!EvenIfReadOnly)
					{
						return COPY_Fail;
					}
					ClearReadOnly(DestPath);
				}
			}
			MakeDirectory(*FPaths::GetPath(FString(Dest)), true);
			if (!WriteAllBytes(DestPath, Bytes, false))
			{
				return COPY_Fail;
			}
			if (Attributes)
			{
				std::error_code Error;
				std::filesystem::permissions(DestPath, std::filesystem::status(SourcePath, Error).permissions(), Error);
			}
			return COPY_OK;
		}

		bool Move(const TCHAR* Dest, const TCHAR* Src, bool Replace, bool EvenIfReadOnly, bool Attributes, bool bDoNotRetryOrError) override
		{
			const std::filesystem::path SourcePath = ToPath(Src);
			const std::filesystem::path DestPath = ToPath(Dest);
			std::error_code Error;
			if (!std::filesystem::exists(SourcePath, Error))
			{
				return false;
			}
			if (std::filesystem::exists(DestPath, Error))
			{
				if (!Replace || !Delete(Dest, false, EvenIfReadOnly, true) || std::filesystem::exists(DestPath, Error))
				{
					return false;
				}
			}
			MakeDirectory(*FPaths::GetPath(FString(Dest)), true);
			std::filesystem::rename(SourcePath, DestPath, Error);
			return !Error;
		}

		bool FileExists(const TCHAR* Filename) override
		{
			return IsRegularFile(ToPath(Filename));
		}

		bool DirectoryExists(const TCHAR* InDirectory) override
		{
			std::error_code Error;
			return std::filesystem::is_directory(ToPath(InDirectory), Error);
		}

		bool MakeDirectory(const TCHAR* Path, bool Tree) override
		{
			const std::filesystem::path Directory = ToPath(Path);
			std::error_code Error;
			if (Directory.empty() || std::filesystem::is_directory(Directory, Error))
			{
				return true;
			}
			if (Tree)
			{
				std::filesystem::create_directories(Directory, Error);
			}
			else
			{
				std::filesystem::create_directory(Directory, Error);
			}
			return !Error && std::filesystem::is_directory(Directory, Error);
		}

		bool IsReadOnly(const TCHAR* Filename) override
		{
			return IsReadOnlyFile(ToPath(Filename));
		}

		int64 FileSize(const TCHAR* Filename) override
		{
			const std::filesystem::path Path = ToPath(Filename);
			std::error_code Error;
			if (!IsRegularFile(Path))
			{
				return INDEX_NONE;
			}
			const std::uintmax_t Size = std::filesystem::file_size(Path, Error);
			return Error ? (int64)INDEX_NONE : (int64)Size;
		}
	};

	FString FromUtf16(const std::string& Bytes, size_t Start, bool bBigEndian)
	{
		std::u16string Text;
		Text.reserve((Bytes.size() - Start) / 2);
		for (size_t Index = Start; Index + 1 < Bytes.size(); Index += 2)
		{
			const uint16 First = (unsigned char)Bytes[Index];
			const uint16 Second = (unsigned char)Bytes[Index + 1];
			Text.push_back((char16_t)(bBigEndian ? (First << 8) | Second : (Second << 8) | First));
		}
		return FString(MoveTemp(Text));
	}

	std::string ToUtf16LittleEndianWithMark(FStringView Text)
	{
		std::string Bytes = "\xFF\xFE";
		Bytes.reserve(2 + (size_t)Text.Len() * 2);
		for (const TCHAR Character : Text)
		{
			Bytes.push_back((char)(Character & 0xFF));
			Bytes.push_back((char)((Character >> 8) & 0xFF));
		}
		return Bytes;
	}

	bool IsPureAnsi(FStringView Text)
	{
		for (const TCHAR Character : Text)
		{
			if (Character > 0x7F)
			{
				return false;
			}
		}
		return true;
	}
}

IFileManager& IFileManager::Get()
{
	static FHostFileManager Instance;
	return Instance;
}

bool FFileHelper::LoadFileToString(FString& Result, const TCHAR* Filename, EHashOptions VerifyFlags, uint32 ReadFlags)
{
	std::string Bytes;
	if (!ReadAllBytes(ToPath(Filename), Bytes))
	{
		return false;
	}
	const auto StartsWith = [&Bytes](const char* Mark, size_t Length)
	{
		return Bytes.size() >= Length && Bytes.compare(0, Length, Mark, Length) == 0;
	};
	if (StartsWith("\xFF\xFE", 2))
	{
		Result = FromUtf16(Bytes, 2, false);
	}
	else if (StartsWith("\xFE\xFF", 2))
	{
		Result = FromUtf16(Bytes, 2, true);
	}
	else if (StartsWith("\xEF\xBB\xBF", 3))
	{
		Result = UECompatFromUtf8(std::string_view(Bytes).substr(3));
	}
	else if (FString Decoded = UECompatFromUtf8(Bytes); UECompatToUtf8(Decoded) == Bytes)
	{
		// Valid UTF-8 is exactly what survives decoding and encoding again.
		Result = MoveTemp(Decoded);
	}
	else
	{
		std::u16string Text;
		Text.reserve(Bytes.size());
		for (const char Byte : Bytes)
		{
			Text.push_back((char16_t)(unsigned char)Byte);
		}
		Result = FString(MoveTemp(Text));
	}
	return true;
}

bool FFileHelper::LoadFileToArray(TArray<uint8>& Result, const TCHAR* Filename, uint32 Flags)
{
	std::string Bytes;
	if (!ReadAllBytes(ToPath(Filename), Bytes))
	{
		return false;
	}
	Result.Reset();
	Result.Reserve((int32)Bytes.size());
	for (const char Byte : Bytes)
	{
		Result.Add((uint8)Byte);
	}
	return true;
}

bool FFileHelper::SaveArrayToFile(TArrayView64<const uint8> Array, const TCHAR* Filename, IFileManager* FileManager, uint32 WriteFlags)
{
	const std::filesystem::path Path = ToPath(Filename);
	IFileManager& Files = FileManager ? *FileManager : IFileManager::Get();
	if (IsRegularFile(Path))
	{
		if (WriteFlags & FILEWRITE_NoReplaceExisting)
		{
			return false;
		}
		if (IsReadOnlyFile(Path) && !(WriteFlags & FILEWRITE_EvenIfReadOnly))
		{
			return false;
		}
	}
	Files.MakeDirectory(*FPaths::GetPath(FString(Filename)), true);
	const std::string Bytes(reinterpret_cast<const char*>(Array.GetData()), (size_t)Array.Num());
	return WriteAllBytes(Path, Bytes, (WriteFlags & FILEWRITE_Append) != 0);
}

bool FFileHelper::SaveStringToFile(FStringView String, const TCHAR* Filename, EEncodingOptions EncodingOptions, IFileManager* FileManager, uint32 WriteFlags)
{
	const std::filesystem::path Path = ToPath(Filename);
	IFileManager& Files = FileManager ? *FileManager : IFileManager::Get();
	if (IsRegularFile(Path))
	{
		if (WriteFlags & FILEWRITE_NoReplaceExisting)
		{
			return false;
		}
		if (IsReadOnlyFile(Path) && !(WriteFlags & FILEWRITE_EvenIfReadOnly))
		{
			return false;
		}
	}
	Files.MakeDirectory(*FPaths::GetPath(FString(Filename)), true);

	std::string Bytes;
	const bool bWriteUtf16 = EncodingOptions == EEncodingOptions::ForceUnicode || (EncodingOptions == EEncodingOptions::AutoDetect && !IsPureAnsi(String));
	if (bWriteUtf16)
	{
		Bytes = ToUtf16LittleEndianWithMark(String);
	}
	else if (EncodingOptions == EEncodingOptions::ForceUTF8 || EncodingOptions == EEncodingOptions::ForceUTF8WithoutBOM)
	{
		if (EncodingOptions == EEncodingOptions::ForceUTF8)
		{
			Bytes = "\xEF\xBB\xBF";
		}
		Bytes += UECompatToUtf8(String);
	}
	else
	{
		// One byte per character; characters outside the byte range cannot be kept.
		Bytes.reserve((size_t)String.Len());
		for (const TCHAR Character : String)
		{
			Bytes.push_back(Character <= 0xFF ? (char)Character : '?');
		}
	}
	return WriteAllBytes(Path, Bytes, (WriteFlags & FILEWRITE_Append) != 0);
}
