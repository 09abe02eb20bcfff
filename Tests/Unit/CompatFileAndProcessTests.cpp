// The engine behaviours of file helpers, FDateTime and ExecProcess that the AI setup relies on.
#include "AISetupTestSupport.h"
#include "HAL/FileManager.h"
#include "HAL/PlatformProcess.h"
#include "Misc/DateTime.h"
#include "Misc/FileHelper.h"
#include "ZorvekTestSupport.h"

TEST(CompatFileManager, CopyIsDestinationFirstAndAnswersCopyOkOnSuccess)
{
	FTemporaryFolder Folder;
	Folder.WriteBytes("source.txt", "source");
	Folder.WriteBytes("dest.txt", "dest");
	IFileManager& Files = IFileManager::Get();

	EXPECT_EQ(COPY_OK, 0);
	EXPECT_EQ(Files.Copy(*Folder.PathText("dest.txt"), *Folder.PathText("source.txt")), (uint32)COPY_OK);
	EXPECT_EQ(Folder.ReadBytes("dest.txt"), "source");
	EXPECT_EQ(Folder.ReadBytes("source.txt"), "source");

	// No replacing when asked not to, and none of a read-only file unless asked to.
	Folder.WriteBytes("dest.txt", "dest");
	EXPECT_EQ(Files.Copy(*Folder.PathText("dest.txt"), *Folder.PathText("source.txt"), false), (uint32)COPY_Fail);
	Folder.MakeReadOnly("dest.txt");
	EXPECT_EQ(Files.Copy(*Folder.PathText("dest.txt"), *Folder.PathText("source.txt")), (uint32)COPY_Fail);
	EXPECT_EQ(Folder.ReadBytes("dest.txt"), "dest");
	EXPECT_EQ(Files.Copy(*Folder.PathText("dest.txt"), *Folder.PathText("source.txt"), true, true), (uint32)COPY_OK);
	EXPECT_EQ(Folder.ReadBytes("dest.txt"), "source");

	EXPECT_EQ(Files.Copy(*Folder.PathText("new/deeper/copy.txt"), *Folder.PathText("source.txt")), (uint32)COPY_OK);
	EXPECT_EQ(Files.Copy(*Folder.PathText("x.txt"), *Folder.PathText("missing.txt")), (uint32)COPY_Fail);
}

TEST(CompatFileManager, DeleteAndMoveRespectReadOnlyFiles)
{
	FTemporaryFolder Folder;
	IFileManager& Files = IFileManager::Get();
	Folder.WriteBytes("locked.txt", "locked");
	Folder.MakeReadOnly("locked.txt");
	EXPECT_TRUE(Files.IsReadOnly(*Folder.PathText("locked.txt")));

	EXPECT_FALSE(Files.Delete(*Folder.PathText("locked.txt")));
	EXPECT_TRUE(Folder.Exists("locked.txt"));

	Folder.WriteBytes("incoming.txt", "incoming");
	EXPECT_FALSE(Files.Move(*Folder.PathText("locked.txt"), *Folder.PathText("incoming.txt")));
	EXPECT_EQ(Folder.ReadBytes("locked.txt"), "locked");
	EXPECT_TRUE(Folder.Exists("incoming.txt"));

	EXPECT_TRUE(Files.Delete(*Folder.PathText("locked.txt"), false, true));
	EXPECT_FALSE(Folder.Exists("locked.txt"));

	// A missing file is deleted already, unless it was required to exist.
	EXPECT_TRUE(Files.Delete(*Folder.PathText("missing.txt")));
	EXPECT_FALSE(Files.Delete(*Folder.PathText("missing.txt"), true));

	Folder.WriteBytes("target.txt", "old");
	EXPECT_TRUE(Files.Move(*Folder.PathText("target.txt"), *Folder.PathText("incoming.txt")));
	EXPECT_EQ(Folder.ReadBytes("target.txt"), "incoming");
	EXPECT_FALSE(Folder.Exists("incoming.txt"));
}

TEST(CompatFileManager, MakeDirectoryBuildsTreesAndFailsWhereAFileStands)
{
	FTemporaryFolder Folder;
	IFileManager& Files = IFileManager::Get();
	EXPECT_FALSE(Files.MakeDirectory(*Folder.PathText("a/b/c")));
	EXPECT_TRUE(Files.MakeDirectory(*Folder.PathText("a/b/c"), true));
	EXPECT_TRUE(Files.MakeDirectory(*Folder.PathText("a/b/c"), true));
	EXPECT_TRUE(Files.DirectoryExists(*Folder.PathText("a/b/c")));
	Folder.WriteBytes("file", "x");
	EXPECT_FALSE(Files.MakeDirectory(*Folder.PathText("file/sub"), true));
	EXPECT_FALSE(Files.FileExists(*Folder.PathText("a")));
}

TEST(CompatFileHelper, SaveStringToFileEncodings)
{
	FTemporaryFolder Folder;
	const FString Ascii = TEXT("{\r\n\t\"a\": 1\r\n}");
	ASSERT_TRUE(FFileHelper::SaveStringToFile(Ascii, *Folder.PathText("ascii.json")));
	EXPECT_EQ(Folder.ReadBytes("ascii.json"), "{\r\n\t\"a\": 1\r\n}");

	const FString Accented = TEXT("caf\u00E9");
	ASSERT_TRUE(FFileHelper::SaveStringToFile(Accented, *Folder.PathText("auto.txt")));
	EXPECT_EQ(Folder.ReadBytes("auto.txt"), std::string("\xFF\xFE" "c\0a\0f\0\xE9\0", 10));
	ASSERT_TRUE(FFileHelper::SaveStringToFile(Accented, *Folder.PathText("utf8bom.txt"), FFileHelper::EEncodingOptions::ForceUTF8));
	EXPECT_EQ(Folder.ReadBytes("utf8bom.txt"), "\xEF\xBB\xBF" "caf\xC3\xA9");
	ASSERT_TRUE(FFileHelper::SaveStringToFile(Accented, *Folder.PathText("utf8.txt"), FFileHelper::EEncodingOptions::ForceUTF8WithoutBOM));
	EXPECT_EQ(Folder.ReadBytes("utf8.txt"), "caf\xC3\xA9");

	// Saving replaces the whole file and makes missing folders.
	ASSERT_TRUE(FFileHelper::SaveStringToFile(TEXT("x"), *Folder.PathText("deep/er/ascii.json")));
	ASSERT_TRUE(FFileHelper::SaveStringToFile(TEXT("x"), *Folder.PathText("ascii.json")));
	EXPECT_EQ(Folder.ReadBytes("ascii.json"), "x");
	Folder.MakeReadOnly("ascii.json");
	EXPECT_FALSE(FFileHelper::SaveStringToFile(TEXT("y"), *Folder.PathText("ascii.json")));
}

TEST(CompatFileHelper, LoadFileToStringDetectsByteOrderMarksAndUtf8)
{
	FTemporaryFolder Folder;
	FString Text;
	Folder.WriteBytes("le.txt", std::string("\xFF\xFE" "c\0a\0f\0\xE9\0", 10));
	ASSERT_TRUE(FFileHelper::LoadFileToString(Text, *Folder.PathText("le.txt")));
	EXPECT_TEXT_EQ(Text, TEXT("caf\u00E9"));
	Folder.WriteBytes("be.txt", std::string("\xFE\xFF\0c\0a\0f\0\xE9", 10));
	ASSERT_TRUE(FFileHelper::LoadFileToString(Text, *Folder.PathText("be.txt")));
	EXPECT_TEXT_EQ(Text, TEXT("caf\u00E9"));
	Folder.WriteBytes("bom.txt", "\xEF\xBB\xBF" "caf\xC3\xA9");
	ASSERT_TRUE(FFileHelper::LoadFileToString(Text, *Folder.PathText("bom.txt")));
	EXPECT_TEXT_EQ(Text, TEXT("caf\u00E9"));
	Folder.WriteBytes("plain.txt", "caf\xC3\xA9");
	ASSERT_TRUE(FFileHelper::LoadFileToString(Text, *Folder.PathText("plain.txt")));
	EXPECT_TEXT_EQ(Text, TEXT("caf\u00E9"));
	// Not UTF-8: one character per byte.
	Folder.WriteBytes("latin1.txt", "caf\xE9");
	ASSERT_TRUE(FFileHelper::LoadFileToString(Text, *Folder.PathText("latin1.txt")));
	EXPECT_TEXT_EQ(Text, TEXT("caf\u00E9"));
	Folder.WriteBytes("empty.txt", "");
	ASSERT_TRUE(FFileHelper::LoadFileToString(Text, *Folder.PathText("empty.txt")));
	EXPECT_TRUE(Text.IsEmpty());

	EXPECT_FALSE(FFileHelper::LoadFileToString(Text, *Folder.PathText("missing.txt")));
	std::filesystem::create_directories(Folder.Path("folder"));
	EXPECT_FALSE(FFileHelper::LoadFileToString(Text, *Folder.PathText("folder")));
}

TEST(CompatDateTime, ToStringUsesTheEnginesOwnSpecifiers)
{
	const FDateTime Time(2025, 11, 22, 14, 5, 9, 7);
	EXPECT_TEXT_EQ(Time.ToString(TEXT("%Y%m%d-%H%M%S")), TEXT("20251122-140509"));
	// %M is the minute and %s the millisecond, unlike strftime.
	EXPECT_TEXT_EQ(Time.ToString(TEXT("%M|%s|%S")), TEXT("05|007|09"));
	EXPECT_TEXT_EQ(Time.ToString(TEXT("%h %a %A %y %D %d")), TEXT("02 pm PM 25 326 22"));
	EXPECT_TEXT_EQ(Time.ToString(), TEXT("2025.11.22-14.05.09"));
	EXPECT_TEXT_EQ(FDateTime(2024, 12, 31, 0, 0, 0).ToString(TEXT("%D %h %a 100%%")), TEXT("366 12 am 100%"));
	EXPECT_TEXT_EQ(FDateTime(1, 1, 1).ToString(TEXT("%Y-%m-%d")), TEXT("0001-01-01"));
	EXPECT_EQ(FDateTime(1, 1, 1).GetTicks(), 0);
}

TEST(CompatDateTime, NowIsTheLocalClock)
{
	const std::time_t Seconds = std::time(nullptr);
	std::tm Local{};
	localtime_r(&Seconds, &Local);
	const FDateTime Now = FDateTime::Now();
	EXPECT_EQ(Now.GetYear(), Local.tm_year + 1900);
	EXPECT_EQ(Now.GetMonth(), Local.tm_mon + 1);
	EXPECT_EQ(Now.GetHour(), Local.tm_hour);
}

TEST(CompatExecProcess, CollectsExitCodeAndBothOutputsWithQuotedArguments)
{
	int32 ExitCode = -1;
	FString StdOut;
	FString StdErr;
	ASSERT_TRUE(FPlatformProcess::ExecProcess(TEXT("sh"), TEXT("-c \"printf 'out put'; printf err >&2; exit 3\""), &ExitCode, &StdOut, &StdErr));
	EXPECT_EQ(ExitCode, 3);
	EXPECT_TEXT_EQ(StdOut, TEXT("out put"));
	EXPECT_TEXT_EQ(StdErr, TEXT("err"));

	// Null out-parameters are allowed.
	EXPECT_TRUE(FPlatformProcess::ExecProcess(TEXT("true"), TEXT(""), nullptr, nullptr, nullptr));
}

TEST(CompatExecProcess, LargeOutputOnBothStreamsDoesNotStall)
{
	int32 ExitCode = -1;
	FString StdOut;
	FString StdErr;
	ASSERT_TRUE(FPlatformProcess::ExecProcess(TEXT("sh"), TEXT("-c \"yes e | head -c 300000 >&2; yes o | head -c 300000\""),
		&ExitCode, &StdOut, &StdErr));
	EXPECT_EQ(ExitCode, 0);
	EXPECT_EQ(StdOut.Len(), 300000);
	EXPECT_EQ(StdErr.Len(), 300000);
}

TEST(CompatExecProcess, MissingProgramCannotBeStarted)
{
	int32 ExitCode = 12345;
	EXPECT_FALSE(FPlatformProcess::ExecProcess(TEXT("zorvek-no-such-program"), TEXT("--help"), &ExitCode, nullptr, nullptr));
	EXPECT_EQ(ExitCode, 12345);
	EXPECT_FALSE(FPlatformProcess::ExecProcess(TEXT(""), TEXT(""), &ExitCode, nullptr, nullptr));
}
