// The engine behaviours of file helpers, FDateTime, the process API and Async that the AI setup
// relies on.
#include "AISetupTestSupport.h"
#include "Async/Async.h"
#include "CoreGlobals.h"
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

// unreal-api-core.md §4.10: AutoDetect writes ANSI when every character is ASCII.
TEST(CompatFileHelper, AutoDetectWritesAllAsciiTextOneBytePerCharacter)
{
	FTemporaryFolder Folder;
	ASSERT_TRUE(FFileHelper::SaveStringToFile(TEXT("{\r\n\t\"a\": 1\r\n}"), *Folder.PathText("ascii.json")));
	EXPECT_EQ(Folder.ReadBytes("ascii.json"), "{\r\n\t\"a\": 1\r\n}");
	// DEL is still ASCII.
	ASSERT_TRUE(FFileHelper::SaveStringToFile(TEXT("a\u007F"), *Folder.PathText("del.txt")));
	EXPECT_EQ(Folder.ReadBytes("del.txt"), "a\x7F");
}

// unreal-api-core.md §4.10: AutoDetect writes UTF-16LE with a byte-order mark as soon as one
// character is not ASCII, which other programs' JSON readers cannot read.
TEST(CompatFileHelper, AutoDetectWritesUtf16WithAMarkForOneNonAsciiCharacter)
{
	FTemporaryFolder Folder;
	ASSERT_TRUE(FFileHelper::SaveStringToFile(TEXT("caf\u00E9"), *Folder.PathText("auto.txt")));
	EXPECT_EQ(Folder.ReadBytes("auto.txt"), std::string("\xFF\xFE" "c\0a\0f\0\xE9\0", 10));
	ASSERT_TRUE(FFileHelper::SaveStringToFile(TEXT("caf\u00E9"), *Folder.PathText("unicode.txt"), FFileHelper::EEncodingOptions::ForceUnicode));
	EXPECT_EQ(Folder.ReadBytes("unicode.txt"), Folder.ReadBytes("auto.txt"));
}

// unreal-api-core.md §4.10: ForceUTF8 writes a byte-order mark, ForceUTF8WithoutBOM does not.
TEST(CompatFileHelper, ForceUtf8WritesAMarkAndForceUtf8WithoutBomDoesNot)
{
	FTemporaryFolder Folder;
	// A character beyond the 16-bit range is one four-byte sequence, not two surrogate halves.
	const FString Text = TEXT("Jos\u00E9 \U0001F600");
	ASSERT_TRUE(FFileHelper::SaveStringToFile(Text, *Folder.PathText("utf8bom.txt"), FFileHelper::EEncodingOptions::ForceUTF8));
	EXPECT_EQ(Folder.ReadBytes("utf8bom.txt"), "\xEF\xBB\xBF" "Jos\xC3\xA9 \xF0\x9F\x98\x80");
	ASSERT_TRUE(FFileHelper::SaveStringToFile(Text, *Folder.PathText("utf8.txt"), FFileHelper::EEncodingOptions::ForceUTF8WithoutBOM));
	EXPECT_EQ(Folder.ReadBytes("utf8.txt"), "Jos\xC3\xA9 \xF0\x9F\x98\x80");
	// All-ASCII text is the same bytes either way.
	ASSERT_TRUE(FFileHelper::SaveStringToFile(TEXT("{}"), *Folder.PathText("plain.txt"), FFileHelper::EEncodingOptions::ForceUTF8WithoutBOM));
	EXPECT_EQ(Folder.ReadBytes("plain.txt"), "{}");
}

// unreal-api-core.md §4.10: SaveStringToFile overwrites and creates missing folders.
TEST(CompatFileHelper, SaveStringToFileReplacesTheFileMakesFoldersAndRespectsReadOnly)
{
	FTemporaryFolder Folder;
	ASSERT_TRUE(FFileHelper::SaveStringToFile(TEXT("x"), *Folder.PathText("deep/er/ascii.json")));
	ASSERT_TRUE(FFileHelper::SaveStringToFile(TEXT("longer"), *Folder.PathText("ascii.json")));
	ASSERT_TRUE(FFileHelper::SaveStringToFile(TEXT("x"), *Folder.PathText("ascii.json")));
	EXPECT_EQ(Folder.ReadBytes("ascii.json"), "x");
	Folder.MakeReadOnly("ascii.json");
	EXPECT_FALSE(FFileHelper::SaveStringToFile(TEXT("y"), *Folder.PathText("ascii.json")));
	EXPECT_EQ(Folder.ReadBytes("ascii.json"), "x");
}

// unreal-api-core.md §4.10: byte arrays are written and read back as they are (zero bytes and
// bytes above 0x7F included); a missing file leaves the destination untouched.
TEST(CompatFileHelper, SaveArrayToFileAndLoadFileToArrayKeepEveryByte)
{
	FTemporaryFolder Folder;
	const TArray<uint8> Bytes = {0x89, 'P', 'N', 'G', 0x00, 0x0D, 0x0A, 0xFF};
	ASSERT_TRUE(FFileHelper::SaveArrayToFile(Bytes, *Folder.PathText("made/with/parents/image.png")));
	EXPECT_EQ(Folder.ReadBytes("made/with/parents/image.png"), std::string("\x89PNG\0\r\n\xFF", 8));

	TArray<uint8> Loaded = {1, 2, 3};
	ASSERT_TRUE(FFileHelper::LoadFileToArray(Loaded, *Folder.PathText("made/with/parents/image.png")));
	EXPECT_EQ(Loaded, Bytes);

	ASSERT_TRUE(FFileHelper::SaveArrayToFile(TArray<uint8>{7}, *Folder.PathText("made/with/parents/image.png")));
	EXPECT_EQ(Folder.ReadBytes("made/with/parents/image.png"), "\x07");
	Folder.MakeReadOnly("made/with/parents/image.png");
	EXPECT_FALSE(FFileHelper::SaveArrayToFile(Bytes, *Folder.PathText("made/with/parents/image.png")));

	TArray<uint8> Untouched = {1, 2, 3};
	EXPECT_FALSE(FFileHelper::LoadFileToArray(Untouched, *Folder.PathText("missing.png")));
	EXPECT_EQ(Untouched, (TArray<uint8>{1, 2, 3}));
}

// unreal-api-core.md §4.10: LoadFileToString detects UTF-8 and UTF-16 byte-order marks and reads
// files without one as UTF-8 when they are valid UTF-8.
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
	Folder.WriteBytes("plain.txt", "Jos\xC3\xA9 \xF0\x9F\x98\x80");
	ASSERT_TRUE(FFileHelper::LoadFileToString(Text, *Folder.PathText("plain.txt")));
	EXPECT_TEXT_EQ(Text, TEXT("Jos\u00E9 \U0001F600"));
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

// What one encoding writes, the loader reads back.
TEST(CompatFileHelper, EveryEncodingReadsBackAsWritten)
{
	FTemporaryFolder Folder;
	const FString Text = TEXT("{\"path\": \"C:/Users/Jos\u00E9/\u65E5\u672C\"}");
	for (const FFileHelper::EEncodingOptions Encoding : {FFileHelper::EEncodingOptions::AutoDetect, FFileHelper::EEncodingOptions::ForceUnicode,
			 FFileHelper::EEncodingOptions::ForceUTF8, FFileHelper::EEncodingOptions::ForceUTF8WithoutBOM})
	{
		SCOPED_TRACE((int32)Encoding);
		ASSERT_TRUE(FFileHelper::SaveStringToFile(Text, *Folder.PathText("round.json"), Encoding));
		FString ReadBack;
		ASSERT_TRUE(FFileHelper::LoadFileToString(ReadBack, *Folder.PathText("round.json")));
		EXPECT_TEXT_EQ(ReadBack, Text);
	}
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

namespace
{
	// A process started with one pipe for its output, as the client commands are.
	struct FPipedProcess
	{
		explicit FPipedProcess(const TCHAR* Script, const TCHAR* WorkingDirectory = nullptr)
		{
			FPlatformProcess::CreatePipe(ReadPipe, WritePipe);
			Handle = FPlatformProcess::CreateProc(TEXT("sh"), *(TEXT("-c \"") + FString(Script) + TEXT("\"")), false, true, true, nullptr, 0,
				WorkingDirectory, WritePipe, nullptr);
		}
		~FPipedProcess()
		{
			FPlatformProcess::CloseProc(Handle);
			FPlatformProcess::ClosePipe(ReadPipe, WritePipe);
		}
		// Waits for the end while reading; what the process wrote.
		std::string ReadUntilEnd()
		{
			std::string Output;
			TArray<uint8> Chunk;
			while (true)
			{
				const bool bRunning = FPlatformProcess::IsProcRunning(Handle);
				while (FPlatformProcess::ReadPipeToArray(ReadPipe, Chunk))
				{
					Output.append((const char*)Chunk.GetData(), (size_t)Chunk.Num());
				}
				if (!bRunning)
				{
					return Output;
				}
				FPlatformProcess::Sleep(0.005f);
			}
		}

		void* ReadPipe = nullptr;
		void* WritePipe = nullptr;
		FProcHandle Handle;
	};
}

// unreal-api-core.md §4.12: CreateProc with pipes is the non-blocking alternative to ExecProcess.
// The notes lack the signatures and the pipe semantics; these follow the engine's declarations.
TEST(CompatCreateProc, ReadsThePipeWithoutWaitingAndReportsTheExitCodeOnlyOnceEnded)
{
	// A process that still runs answers no exit code, and its empty pipe does not block.
	FPipedProcess Sleeper(TEXT("sleep 5"));
	ASSERT_TRUE(FPlatformProcess::IsProcRunning(Sleeper.Handle));
	int32 ExitCode = 12345;
	EXPECT_FALSE(FPlatformProcess::GetProcReturnCode(Sleeper.Handle, &ExitCode));
	EXPECT_EQ(ExitCode, 12345);
	TArray<uint8> Nothing;
	EXPECT_FALSE(FPlatformProcess::ReadPipeToArray(Sleeper.ReadPipe, Nothing));
	FPlatformProcess::TerminateProc(Sleeper.Handle, true);

	// Output and error output share the one pipe; the process starts in the folder given, with
	// nothing to read as its input.
	FTemporaryFolder Folder;
	std::filesystem::create_directories(Folder.Path("work"));
	FPipedProcess Process(TEXT("read Line; printf 'out'; printf 'err' >&2; pwd -P; exit 3"), *Folder.PathText("work"));
	ASSERT_TRUE(Process.Handle.IsValid());
	EXPECT_EQ(Process.ReadUntilEnd(), "outerr" + std::filesystem::canonical(Folder.Path("work")).string() + "\n");
	EXPECT_TRUE(FPlatformProcess::GetProcReturnCode(Process.Handle, &ExitCode));
	EXPECT_EQ(ExitCode, 3);
}

TEST(CompatCreateProc, MissingProgramOrWorkingFolderGivesAnInvalidHandle)
{
	FTemporaryFolder Folder;
	uint32 ProcessId = 0;
	EXPECT_FALSE(FPlatformProcess::CreateProc(TEXT("zorvek-no-such-program"), TEXT(""), false, true, true, &ProcessId, 0, nullptr, nullptr).IsValid());
	EXPECT_FALSE(FPlatformProcess::CreateProc(TEXT("true"), TEXT(""), false, true, true, &ProcessId, 0, *Folder.PathText("missing"), nullptr).IsValid());
	FProcHandle Started = FPlatformProcess::CreateProc(TEXT("true"), TEXT(""), false, true, true, &ProcessId, 0, *Folder.PathText(""), nullptr);
	EXPECT_TRUE(Started.IsValid());
	EXPECT_NE(ProcessId, 0u);
	FPlatformProcess::CloseProc(Started);
	EXPECT_FALSE(Started.IsValid());
}

// Not in the reference notes; check against the engine: TerminateProc with KillTree ends what the
// process started too, and the engine's Windows TerminateProc ends a process with exit code 0, so
// a killed program reads as a clean exit by its code alone.
TEST(CompatCreateProc, TerminateWithKillTreeEndsTheChildrenAndLeavesExitCodeZero)
{
	FTemporaryFolder Folder;
	FPipedProcess Process(TEXT("(sleep 1; touch late) & echo started; sleep 30"), *Folder.PathText(""));
	ASSERT_TRUE(Process.Handle.IsValid());
	TArray<uint8> Chunk;
	std::string Output;
	while (Output.find("started") == std::string::npos)
	{
		if (FPlatformProcess::ReadPipeToArray(Process.ReadPipe, Chunk))
		{
			Output.append((const char*)Chunk.GetData(), (size_t)Chunk.Num());
		}
		FPlatformProcess::Sleep(0.005f);
	}
	FPlatformProcess::TerminateProc(Process.Handle, true);
	EXPECT_FALSE(FPlatformProcess::IsProcRunning(Process.Handle));
	int32 ExitCode = -1;
	EXPECT_TRUE(FPlatformProcess::GetProcReturnCode(Process.Handle, &ExitCode));
	EXPECT_EQ(ExitCode, 0);
	FPlatformProcess::Sleep(1.2f);
	EXPECT_FALSE(Folder.Exists("late"));
}

// unreal-api-core.md §4.15: Async runs the callable elsewhere and returns a future at once;
// TaskGraphMainThread work waits for the game thread.
TEST(CompatAsync, ThreadRunsElsewhereAndMainThreadWorkWaitsForTheGameThread)
{
	std::atomic<bool> bRelease{false};
	TFuture<bool> OnWorker = Async(EAsyncExecution::Thread, [&bRelease]()
	{
		while (!bRelease)
		{
			FPlatformProcess::Sleep(0.001f);
		}
		return IsInGameThread();
	});
	EXPECT_TRUE(OnWorker.IsValid());
	EXPECT_FALSE(OnWorker.IsReady());
	bRelease = true;
	OnWorker.Wait();
	EXPECT_FALSE(OnWorker.Get());

	FGameThreadTaskQueue::Get().ProcessPendingTasks();
	bool bCompleted = false;
	TFuture<int32> OnGameThread = Async(EAsyncExecution::TaskGraphMainThread, []() { return IsInGameThread() ? 7 : -1; }, [&bCompleted]() { bCompleted = true; });
	EXPECT_FALSE(OnGameThread.IsReady());
	EXPECT_EQ(FGameThreadTaskQueue::Get().ProcessPendingTasks(), 1);
	ASSERT_TRUE(OnGameThread.IsReady());
	EXPECT_EQ(OnGameThread.Get(), 7);
	EXPECT_TRUE(bCompleted);
}
