// Helpers of the AI setup tests: exact text comparison, environment and temporary folders, and a
// stand-in for the outside programs the setup runs.
#pragma once

#include "CoreMinimal.h"
#include "HAL/PlatformMisc.h"
#include "Setup/ZorvekMCPBridgeAISetup.h"
#include "Setup/ZorvekMCPBridgeClientCli.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

// FString's == ignores case; the setup texts must match byte for byte.
#define EXPECT_TEXT_EQ(Actual, Expected) EXPECT_EQ(UECompatToUtf8(FString(Actual)), UECompatToUtf8(FString(Expected)))

// A copy of the catalogue's entry for this id; the id must exist.
inline FZorvekMCPBridgeClientDescriptor FindCatalogueClient(const TCHAR* Id)
{
	const TArray<FZorvekMCPBridgeClientDescriptor> Catalogue = ZorvekMCPBridgeAISetup::BuildClientCatalogue();
	const FZorvekMCPBridgeClientDescriptor* Client = ZorvekMCPBridgeAISetup::FindClient(Catalogue, Id);
	check(Client);
	return *Client;
}

// Sets environment variables for one test and puts the old values back.
class FScopedEnvironment
{
public:
	void Set(const TCHAR* Name, const TCHAR* Value)
	{
		Saved.Add(TPair<FString, FString>(Name, FPlatformMisc::GetEnvironmentVariable(Name)));
		FPlatformMisc::SetEnvironmentVar(Name, Value);
	}
	~FScopedEnvironment()
	{
		for (int32 Index = Saved.Num() - 1; Index >= 0; --Index)
		{
			FPlatformMisc::SetEnvironmentVar(*Saved[Index].Key, *Saved[Index].Value);
		}
	}

private:
	TArray<TPair<FString, FString>> Saved;
};

// A fresh folder under the system's temporary folder, removed with everything in it.
class FTemporaryFolder
{
public:
	FTemporaryFolder()
	{
		std::string Pattern = (std::filesystem::temp_directory_path() / "zorvek-setup-XXXXXX").string();
		Root = std::filesystem::path(::mkdtemp(Pattern.data()));
	}
	~FTemporaryFolder()
	{
		std::error_code Error;
		// Read-only files and folders made by a test must not keep the folder alive.
		for (const auto& Entry : std::filesystem::recursive_directory_iterator(Root, Error))
		{
			std::filesystem::permissions(Entry.path(), std::filesystem::perms::owner_all, std::filesystem::perm_options::add, Error);
		}
		std::filesystem::remove_all(Root, Error);
	}

	std::filesystem::path Path(const std::string& Relative) const { return Root / Relative; }
	FString PathText(const std::string& Relative) const { return UECompatFromUtf8(Path(Relative).string()); }

	void WriteBytes(const std::string& Relative, const std::string& Bytes) const
	{
		std::filesystem::create_directories(Path(Relative).parent_path());
		std::ofstream File(Path(Relative), std::ios::binary | std::ios::trunc);
		File << Bytes;
	}
	std::string ReadBytes(const std::string& Relative) const
	{
		std::ifstream File(Path(Relative), std::ios::binary);
		return std::string(std::istreambuf_iterator<char>(File), std::istreambuf_iterator<char>());
	}
	bool Exists(const std::string& Relative) const { return std::filesystem::exists(Path(Relative)); }
	void MakeReadOnly(const std::string& Relative) const
	{
		std::filesystem::permissions(Path(Relative), std::filesystem::perms::owner_write | std::filesystem::perms::group_write | std::filesystem::perms::others_write,
			std::filesystem::perm_options::remove);
	}
	// The names of the files in the folder, sorted.
	std::vector<std::string> List(const std::string& Relative = std::string()) const
	{
		std::vector<std::string> Names;
		for (const auto& Entry : std::filesystem::directory_iterator(Relative.empty() ? Root : Path(Relative)))
		{
			Names.push_back(Entry.path().filename().string());
		}
		std::sort(Names.begin(), Names.end());
		return Names;
	}

private:
	std::filesystem::path Root;
};

// Answers each program with a prepared result and remembers how it was called.
class FFakeProcessRunner : public IZorvekMCPBridgeProcessRunner
{
public:
	struct FCall
	{
		FString Executable;
		FString Arguments;
		FZorvekMCPBridgeProcessOptions Options;
	};

	FZorvekMCPBridgeProcessResult Run(const FString& Executable, const FString& Arguments, const FZorvekMCPBridgeProcessOptions& Options) override
	{
		Calls.Add(FCall{Executable, Arguments, Options});
		for (const TPair<FString, FZorvekMCPBridgeProcessResult>& Answer : Answers)
		{
			if (Executable.Equals(Answer.Key, ESearchCase::CaseSensitive))
			{
				return Answer.Value;
			}
		}
		return FZorvekMCPBridgeProcessResult();
	}

	// Every later call of this program gets this result; programs with no answer cannot start.
	void Answer(const FString& Executable, int32 ExitCode, const FString& StdOut, const FString& StdErr = FString())
	{
		FZorvekMCPBridgeProcessResult Result;
		Result.bLaunched = true;
		Result.ExitCode = ExitCode;
		Result.StdOut = StdOut;
		Result.StdErr = StdErr;
		Answers.Add(TPair<FString, FZorvekMCPBridgeProcessResult>(Executable, Result));
	}

	// The program runs out of time after printing this; its exit code is what a killed program
	// reports on Windows (0), so only the time-out flag tells.
	void AnswerTimedOut(const FString& Executable, const FString& StdOut)
	{
		FZorvekMCPBridgeProcessResult Result;
		Result.bLaunched = true;
		Result.bTimedOut = true;
		Result.ExitCode = 0;
		Result.StdOut = StdOut;
		Answers.Add(TPair<FString, FZorvekMCPBridgeProcessResult>(Executable, Result));
	}

	TArray<FCall> Calls;

private:
	TArray<TPair<FString, FZorvekMCPBridgeProcessResult>> Answers;
};

// Shell scripts in a temporary folder that stand in for Windows programs (where.exe, the
// command shell, a client's tool), found first on PATH and through ComSpec while this lives.
class FFakeClientTools
{
public:
	FFakeClientTools()
	{
		// where.exe prints the path of a program it finds and fails otherwise.
		AddScript("where.exe", "command -v \"$1\" || exit 1\n");
		// The shell is handed /S /C "<command line>"; the host splits that into three arguments.
		AddScript("fake-cmd", "shift 2\nexec /bin/sh -c \"$1\"\n");
		Environment.Set(TEXT("PATH"), *(Folder.PathText("bin") + TEXT(":") + FPlatformMisc::GetEnvironmentVariable(TEXT("PATH"))));
		Environment.Set(TEXT("ComSpec"), *Folder.PathText("bin/fake-cmd"));
	}

	// A program named Name whose body is this shell script (bash, so it may open /dev/tcp).
	void AddScript(const std::string& Name, const std::string& Body) const
	{
		Folder.WriteBytes("bin/" + Name, "#!/bin/bash\n" + Body);
		std::filesystem::permissions(Folder.Path("bin/" + Name), std::filesystem::perms::owner_all, std::filesystem::perm_options::add);
	}

	const FTemporaryFolder& GetFolder() const { return Folder; }

private:
	FTemporaryFolder Folder;
	FScopedEnvironment Environment;
};
