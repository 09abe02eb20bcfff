// IFileManager: the engine's file manager, with the engine's argument order and results:
// destination first in Copy and Move, Copy answers COPY_OK (0) on success.
//
// Read-only files behave as on Windows, where the editor runs: a file whose owner may not write
// it counts as read-only, and Delete, Copy and Move refuse to replace it unless asked to
// (EvenReadOnly / EvenIfReadOnly).
#pragma once

#include "Containers/UnrealString.h"

class FCopyProgress;

enum EFileRead
{
	FILEREAD_None = 0x00,
	FILEREAD_NoFail = 0x01,
	FILEREAD_Silent = 0x02,
	FILEREAD_AllowWrite = 0x04,
};

enum EFileWrite
{
	FILEWRITE_None = 0x00,
	FILEWRITE_NoFail = 0x01,
	FILEWRITE_NoReplaceExisting = 0x02,
	FILEWRITE_EvenIfReadOnly = 0x04,
	FILEWRITE_Append = 0x08,
	FILEWRITE_AllowRead = 0x10,
	FILEWRITE_Silent = 0x20,
};

enum ECopyResult
{
	COPY_OK = 0,
	COPY_Fail = 1,
	COPY_Canceled = 2,
};

class IFileManager
{
public:
	virtual ~IFileManager() = default;

	static IFileManager& Get();

	virtual bool Delete(const TCHAR* Filename, bool RequireExists = 0, bool EvenReadOnly = 0, bool Quiet = 0) = 0;
	virtual uint32 Copy(const TCHAR* Dest, const TCHAR* Src, bool Replace = 1, bool EvenIfReadOnly = 0, bool Attributes = 0,
		FCopyProgress* Progress = nullptr, EFileRead ReadFlags = FILEREAD_None, EFileWrite WriteFlags = FILEWRITE_None) = 0;
	virtual bool Move(const TCHAR* Dest, const TCHAR* Src, bool Replace = 1, bool EvenIfReadOnly = 0, bool Attributes = 0, bool bDoNotRetryOrError = 0) = 0;
	virtual bool FileExists(const TCHAR* Filename) = 0;
	virtual bool DirectoryExists(const TCHAR* InDirectory) = 0;
	virtual bool MakeDirectory(const TCHAR* Path, bool Tree = 0) = 0;
	virtual bool IsReadOnly(const TCHAR* Filename) = 0;
	virtual int64 FileSize(const TCHAR* Filename) = 0;
};
