// The configuration writer on real files in a temporary folder: what it keeps, what it backs up,
// and that no failure loses the user's file.
#include "AISetupTestSupport.h"
#include "HAL/FileManager.h"
#include "Misc/FileHelper.h"
#include "Setup/ZorvekMCPBridgeConfigWriter.h"
#include "ZorvekTestSupport.h"

namespace
{
	const TCHAR* const Endpoint = TEXT("http://127.0.0.1:8766/mcp");
	const FDateTime FixedTime(2026, 3, 7, 9, 41, 5, 250);
	const std::string BackupSuffix = ".zorvek-backup-20260307-094105";

	FZorvekMCPBridgeClientDescriptor MakeAntigravity(const FString& ConfigPath)
	{
		FZorvekMCPBridgeClientDescriptor Client = FindCatalogueClient(TEXT("antigravity"));
		Client.ConfigPath = ConfigPath;
		return Client;
	}

	// The engine's file manager, except that moving files fails: the moment between deleting the
	// old file and moving the new one into place.
	class FFailingMoveFileManager : public IFileManager
	{
	public:
		bool Delete(const TCHAR* Filename, bool RequireExists, bool EvenReadOnly, bool Quiet) override { return Real().Delete(Filename, RequireExists, EvenReadOnly, Quiet); }
		uint32 Copy(const TCHAR* Dest, const TCHAR* Src, bool Replace, bool EvenIfReadOnly, bool Attributes, FCopyProgress* Progress, EFileRead ReadFlags, EFileWrite WriteFlags) override
		{
			return Real().Copy(Dest, Src, Replace, EvenIfReadOnly, Attributes, Progress, ReadFlags, WriteFlags);
		}
		bool Move(const TCHAR* Dest, const TCHAR* Src, bool Replace, bool EvenIfReadOnly, bool Attributes, bool bDoNotRetryOrError) override { return false; }
		bool FileExists(const TCHAR* Filename) override { return bClaimEveryFileExists || Real().FileExists(Filename); }
		bool DirectoryExists(const TCHAR* InDirectory) override { return Real().DirectoryExists(InDirectory); }
		bool MakeDirectory(const TCHAR* Path, bool Tree) override { return Real().MakeDirectory(Path, Tree); }
		bool IsReadOnly(const TCHAR* Filename) override { return Real().IsReadOnly(Filename); }
		int64 FileSize(const TCHAR* Filename) override { return Real().FileSize(Filename); }

		// Makes a file that cannot be read look present.
		bool bClaimEveryFileExists = false;

	private:
		static IFileManager& Real() { return IFileManager::Get(); }
	};

	class AISetupConfigWriter : public ::testing::Test
	{
	protected:
		FString ConfigPathText() const { return Folder.PathText("home/.gemini/config/mcp_config.json"); }
		std::string ConfigRelative() const { return "home/.gemini/config/mcp_config.json"; }

		bool Write(FString& OutMessage, IFileManager& FileManager = IFileManager::Get())
		{
			const FZorvekMCPBridgeConfigWriter Writer(FileManager, []() { return FixedTime; });
			return Writer.Write(MakeAntigravity(ConfigPathText()), Endpoint, OutMessage);
		}

		TSharedPtr<FJsonObject> ReadConfig() const
		{
			FString Text;
			if (!FFileHelper::LoadFileToString(Text, *ConfigPathText()))
			{
				return nullptr;
			}
			return ParseJsonObject(Text);
		}

		TArray<FString> MemberNames(const TSharedPtr<FJsonObject>& Object) const
		{
			TArray<FString> Names;
			for (const auto& Pair : Object->Values)
			{
				Names.Add(Pair.Key);
			}
			return Names;
		}

		FTemporaryFolder Folder;
		FLogCapture Log;
	};
}

TEST_F(AISetupConfigWriter, MissingFileIsCreatedWithTheFoldersAndOnlyTheBridgeEntry)
{
	FString Message;
	ASSERT_TRUE(Write(Message)) << UECompatToUtf8(Message);
	EXPECT_TEXT_EQ(Message, FString::Printf(TEXT("Updated %s. Restart or refresh the AI client."), *ConfigPathText()));
	// The engine's pretty writer: tabs, CR LF, nested objects on their own lines.
	EXPECT_EQ(Folder.ReadBytes(ConfigRelative()),
		"{\r\n\t\"mcpServers\":\r\n\t{\r\n\t\t\"zorvek-unreal\":\r\n\t\t{\r\n\t\t\t\"httpUrl\": \"http://127.0.0.1:8766/mcp\"\r\n\t\t}\r\n\t}\r\n}");
	// No backup of a file that did not exist, and no temporary file left over.
	EXPECT_EQ(Folder.List("home/.gemini/config"), std::vector<std::string>{"mcp_config.json"});
}

TEST_F(AISetupConfigWriter, OtherServersAndMembersStayInOrderAndTheOldEntryIsReplacedWhole)
{
	const std::string Original =
		"{\n"
		"  \"theme\": \"dark\",\n"
		"  \"mcpServers\": {\n"
		"    \"github\": { \"command\": \"gh-mcp\", \"args\": [\"--stdio\"] },\n"
		"    \"zorvek-unreal\": { \"url\": \"http://127.0.0.1:8765/mcp\", \"trust\": true },\n"
		"    \"files\": { \"httpUrl\": \"http://localhost:9000/mcp\" }\n"
		"  },\n"
		"  \"telemetry\": false\n"
		"}\n";
	Folder.WriteBytes(ConfigRelative(), Original);

	FString Message;
	ASSERT_TRUE(Write(Message)) << UECompatToUtf8(Message);

	const TSharedPtr<FJsonObject> Config = ReadConfig();
	ASSERT_TRUE(Config.IsValid());
	EXPECT_EQ(MemberNames(Config), (TArray<FString>{TEXT("theme"), TEXT("mcpServers"), TEXT("telemetry")}));
	EXPECT_TEXT_EQ(Config->GetStringField(TEXT("theme")), TEXT("dark"));
	const TSharedPtr<FJsonObject> Servers = Config->GetObjectField(TEXT("mcpServers"));
	EXPECT_EQ(MemberNames(Servers), (TArray<FString>{TEXT("github"), TEXT("zorvek-unreal"), TEXT("files")}));
	EXPECT_TEXT_EQ(Servers->GetObjectField(TEXT("github"))->GetStringField(TEXT("command")), TEXT("gh-mcp"));
	EXPECT_EQ(Servers->GetObjectField(TEXT("github"))->GetArrayField(TEXT("args")).Num(), 1);
	const TSharedPtr<FJsonObject> Entry = Servers->GetObjectField(TEXT("zorvek-unreal"));
	EXPECT_EQ(MemberNames(Entry), (TArray<FString>{TEXT("httpUrl")}));
	EXPECT_TEXT_EQ(Entry->GetStringField(TEXT("httpUrl")), Endpoint);

	// The backup is the old file byte for byte, named after the local time of the write.
	EXPECT_EQ(Folder.ReadBytes(ConfigRelative() + BackupSuffix), Original);
	EXPECT_FALSE(Folder.Exists(ConfigRelative() + ".tmp"));
}

TEST_F(AISetupConfigWriter, ServersThatAreNotAnObjectGiveWayToANewObject)
{
	Folder.WriteBytes(ConfigRelative(), "{\"mcpServers\": [\"old\"], \"keep\": 1}");
	FString Message;
	ASSERT_TRUE(Write(Message)) << UECompatToUtf8(Message);
	const TSharedPtr<FJsonObject> Config = ReadConfig();
	ASSERT_TRUE(Config.IsValid());
	EXPECT_EQ(MemberNames(Config), (TArray<FString>{TEXT("mcpServers"), TEXT("keep")}));
	EXPECT_EQ(MemberNames(Config->GetObjectField(TEXT("mcpServers"))), (TArray<FString>{TEXT("zorvek-unreal")}));
	// What was there is in the backup.
	EXPECT_EQ(Folder.ReadBytes(ConfigRelative() + BackupSuffix), "{\"mcpServers\": [\"old\"], \"keep\": 1}");
}

TEST_F(AISetupConfigWriter, MalformedEmptyOrNonObjectFilesAreLeftUntouchedWithoutBackup)
{
	for (const std::string& Content : {std::string(), std::string("not json at all"), std::string("{\"mcpServers\": {"), std::string("[1, 2]"),
			 std::string("{\"a\": 1} trailing")})
	{
		SCOPED_TRACE(Content);
		Folder.WriteBytes(ConfigRelative(), Content);
		FString Message;
		EXPECT_FALSE(Write(Message));
		EXPECT_TEXT_EQ(Message, FString::Printf(TEXT("Config malformed; left untouched: %s"), *ConfigPathText()));
		EXPECT_EQ(Folder.ReadBytes(ConfigRelative()), Content);
		EXPECT_EQ(Folder.List("home/.gemini/config"), std::vector<std::string>{"mcp_config.json"});
	}
}

TEST_F(AISetupConfigWriter, TwoWritesInOneSecondReplaceTheSameBackupEvenWhenReadOnly)
{
	Folder.WriteBytes(ConfigRelative(), "{\"first\": true}");
	FString Message;
	ASSERT_TRUE(Write(Message));
	const std::string AfterFirstWrite = Folder.ReadBytes(ConfigRelative());
	Folder.MakeReadOnly(ConfigRelative() + BackupSuffix);

	ASSERT_TRUE(Write(Message)) << UECompatToUtf8(Message);
	EXPECT_EQ(Folder.ReadBytes(ConfigRelative() + BackupSuffix), AfterFirstWrite);
	EXPECT_EQ(Folder.List("home/.gemini/config"), (std::vector<std::string>{"mcp_config.json", "mcp_config.json" + BackupSuffix}));
}

TEST_F(AISetupConfigWriter, ReadOnlyConfigIsNotReplaced)
{
	const std::string Original = "{\"mcpServers\": {}}";
	Folder.WriteBytes(ConfigRelative(), Original);
	Folder.MakeReadOnly(ConfigRelative());

	FString Message;
	EXPECT_FALSE(Write(Message));
	EXPECT_TEXT_EQ(Message, FString::Printf(TEXT("Could not replace %s"), *ConfigPathText()));
	EXPECT_EQ(Folder.ReadBytes(ConfigRelative()), Original);
	EXPECT_TRUE(IFileManager::Get().IsReadOnly(*ConfigPathText()));
	EXPECT_FALSE(Folder.Exists(ConfigRelative() + ".tmp"));
}

TEST_F(AISetupConfigWriter, FailedMoveAfterDeleteKeepsOldTextInBackupAndNewInTemporaryFile)
{
	const std::string Original = "{\"mcpServers\": {\"github\": {\"command\": \"gh\"}}}";
	Folder.WriteBytes(ConfigRelative(), Original);
	FFailingMoveFileManager FileManager;

	FString Message;
	EXPECT_FALSE(Write(Message, FileManager));
	EXPECT_TEXT_EQ(Message, FString::Printf(TEXT("Could not move temp config into place: %s"), *ConfigPathText()));
	EXPECT_FALSE(Folder.Exists(ConfigRelative()));
	EXPECT_EQ(Folder.ReadBytes(ConfigRelative() + BackupSuffix), Original);
	const TSharedPtr<FJsonObject> Pending = ParseJsonObject(Folder.ReadBytes(ConfigRelative() + ".tmp"));
	ASSERT_TRUE(Pending.IsValid());
	const TSharedPtr<FJsonObject> Servers = Pending->GetObjectField(TEXT("mcpServers"));
	EXPECT_EQ(MemberNames(Servers), (TArray<FString>{TEXT("github"), TEXT("zorvek-unreal")}));
}

TEST_F(AISetupConfigWriter, UnreadableFileStopsBeforeAnyBackup)
{
	FFailingMoveFileManager FileManager;
	FileManager.bClaimEveryFileExists = true;
	FString Message;
	EXPECT_FALSE(Write(Message, FileManager));
	EXPECT_TEXT_EQ(Message, FString::Printf(TEXT("Could not read %s"), *ConfigPathText()));
	EXPECT_TRUE(Folder.List("home/.gemini/config").empty());
}

TEST_F(AISetupConfigWriter, BackupThatCannotBeMadeStopsTheWrite)
{
	const std::string Original = "{}";
	Folder.WriteBytes(ConfigRelative(), Original);
	// A folder where the backup file would go.
	std::filesystem::create_directories(Folder.Path(ConfigRelative() + BackupSuffix));

	FString Message;
	EXPECT_FALSE(Write(Message));
	EXPECT_TEXT_EQ(Message, FString::Printf(TEXT("Could not create backup %s.zorvek-backup-20260307-094105"), *ConfigPathText()));
	EXPECT_EQ(Folder.ReadBytes(ConfigRelative()), Original);
	EXPECT_FALSE(Folder.Exists(ConfigRelative() + ".tmp"));
}

TEST_F(AISetupConfigWriter, TemporaryFileThatCannotBeWrittenLeavesTheConfigAsItWas)
{
	const std::string Original = "{\"keep\": \"me\"}";
	Folder.WriteBytes(ConfigRelative(), Original);
	std::filesystem::create_directories(Folder.Path(ConfigRelative() + ".tmp"));

	FString Message;
	EXPECT_FALSE(Write(Message));
	EXPECT_TEXT_EQ(Message, FString::Printf(TEXT("Could not write temp config %s.tmp"), *ConfigPathText()));
	EXPECT_EQ(Folder.ReadBytes(ConfigRelative()), Original);
}

TEST_F(AISetupConfigWriter, FolderThatCannotBeCreatedIsReportedAndNothingIsWritten)
{
	// A file stands where the configuration folder would be.
	Folder.WriteBytes("home/.gemini/config", "not a folder");
	FString Message;
	EXPECT_FALSE(Write(Message));
	EXPECT_TEXT_EQ(Message, FString::Printf(TEXT("Could not write temp config %s.tmp"), *ConfigPathText()));
	EXPECT_EQ(Folder.ReadBytes("home/.gemini/config"), "not a folder");
	EXPECT_EQ(Folder.List("home/.gemini"), std::vector<std::string>{"config"});
}

TEST_F(AISetupConfigWriter, ClientsWhoseFileTheBridgeDoesNotWriteAreRefusedUntouched)
{
	FZorvekMCPBridgeClientDescriptor Gemini = FindCatalogueClient(TEXT("gemini"));
	Gemini.ConfigPath = Folder.PathText("gemini/settings.json");
	const FZorvekMCPBridgeConfigWriter Writer(IFileManager::Get(), []() { return FixedTime; });
	FString Message;
	EXPECT_FALSE(Writer.Write(Gemini, Endpoint, Message));
	EXPECT_TEXT_EQ(Message, TEXT("The bridge does not write the configuration of Gemini CLI; copy its snippet instead."));
	EXPECT_FALSE(Folder.Exists("gemini"));
}

namespace
{
	// Valid UTF-8 is what survives decoding and encoding again.
	bool IsUtf8WithoutMark(const std::string& Bytes)
	{
		return Bytes.compare(0, 3, "\xEF\xBB\xBF") != 0 && UECompatToUtf8(UECompatFromUtf8(Bytes)) == Bytes;
	}
}

TEST_F(AISetupConfigWriter, NonAsciiMembersAreWrittenAsUtf8WithoutAMarkAndReadBackIntact)
{
	// A user folder named José and a server named with characters beyond Latin-1: the engine's
	// automatic encoding would turn the file into UTF-16, which the clients cannot parse.
	const std::string Original =
		"{\n"
		"  \"mcpServers\": {\n"
		"    \"b\xC3\xBC" "cher\": { \"command\": \"C:/Users/Jos\xC3\xA9/tools/mcp.exe\", \"args\": [\"--root\", \"D:/\xE6\x97\xA5\xE6\x9C\xAC/\"] }\n"
		"  },\n"
		"  \"greeting\": \"\xF0\x9F\x91\x8B ol\xC3\xA1\"\n"
		"}\n";
	Folder.WriteBytes(ConfigRelative(), Original);

	FString Message;
	ASSERT_TRUE(Write(Message)) << UECompatToUtf8(Message);
	const std::string Written = Folder.ReadBytes(ConfigRelative());
	EXPECT_TRUE(IsUtf8WithoutMark(Written));
	// The characters are written as they are, not escaped.
	EXPECT_NE(Written.find("\"C:/Users/Jos\xC3\xA9/tools/mcp.exe\""), std::string::npos);

	const TSharedPtr<FJsonObject> Config = ParseJsonObject(Written);
	ASSERT_TRUE(Config.IsValid());
	EXPECT_TEXT_EQ(Config->GetStringField(TEXT("greeting")), TEXT("\U0001F44B ol\u00E1"));
	const TSharedPtr<FJsonObject> Servers = Config->GetObjectField(TEXT("mcpServers"));
	EXPECT_EQ(MemberNames(Servers), (TArray<FString>{TEXT("b\u00FCcher"), TEXT("zorvek-unreal")}));
	const TSharedPtr<FJsonObject> Other = Servers->GetObjectField(TEXT("b\u00FCcher"));
	EXPECT_TEXT_EQ(Other->GetStringField(TEXT("command")), TEXT("C:/Users/Jos\u00E9/tools/mcp.exe"));
	EXPECT_EQ(JsonStringsOf(Other->GetArrayField(TEXT("args"))), (TArray<FString>{TEXT("--root"), TEXT("D:/\u65E5\u672C/")}));
	EXPECT_EQ(Folder.ReadBytes(ConfigRelative() + BackupSuffix), Original);
}

TEST_F(AISetupConfigWriter, AFileInANonAsciiFolderIsFoundBackedUpAndReplaced)
{
	const std::string Relative = "Users/Jos\xC3\xA9/.gemini/config/mcp_config.json";
	Folder.WriteBytes(Relative, "{\"mcpServers\": {\"files\": {\"url\": \"http://localhost:9000/mcp\"}}}");
	const FZorvekMCPBridgeConfigWriter Writer(IFileManager::Get(), []() { return FixedTime; });
	FString Message;
	ASSERT_TRUE(Writer.Write(MakeAntigravity(Folder.PathText(Relative)), Endpoint, Message)) << UECompatToUtf8(Message);
	EXPECT_TEXT_EQ(Message, TEXT("Updated ") + Folder.PathText(Relative) + TEXT(". Restart or refresh the AI client."));

	const std::string Written = Folder.ReadBytes(Relative);
	EXPECT_TRUE(IsUtf8WithoutMark(Written));
	const TSharedPtr<FJsonObject> Config = ParseJsonObject(Written);
	ASSERT_TRUE(Config.IsValid());
	EXPECT_EQ(MemberNames(Config->GetObjectField(TEXT("mcpServers"))), (TArray<FString>{TEXT("files"), TEXT("zorvek-unreal")}));
	EXPECT_EQ(Folder.List("Users/Jos\xC3\xA9/.gemini/config"), (std::vector<std::string>{"mcp_config.json", "mcp_config.json" + BackupSuffix}));
}

TEST_F(AISetupConfigWriter, AUtf16FileFromEarlierWritesBecomesUtf8)
{
	// What the engine's automatic encoding left behind: UTF-16LE with a byte-order mark.
	// unreal-api-core.md §4.10
	FFileHelper::SaveStringToFile(TEXT("{\"note\": \"caf\u00E9\", \"mcpServers\": {}}"), *ConfigPathText());
	ASSERT_EQ(Folder.ReadBytes(ConfigRelative()).substr(0, 2), "\xFF\xFE");

	FString Message;
	ASSERT_TRUE(Write(Message)) << UECompatToUtf8(Message);
	const std::string Written = Folder.ReadBytes(ConfigRelative());
	EXPECT_TRUE(IsUtf8WithoutMark(Written));
	const TSharedPtr<FJsonObject> Config = ParseJsonObject(Written);
	ASSERT_TRUE(Config.IsValid());
	EXPECT_TEXT_EQ(Config->GetStringField(TEXT("note")), TEXT("caf\u00E9"));
	EXPECT_TRUE(Config->GetObjectField(TEXT("mcpServers"))->HasField(TEXT("zorvek-unreal")));
}

TEST(AISetupConfigWriterNames, BackupNameUsesMinutesAndSecondsNotMonthOrMilliseconds)
{
	EXPECT_TEXT_EQ(FZorvekMCPBridgeConfigWriter::MakeBackupPath(TEXT("C:/Users/Ada/.gemini/config/mcp_config.json"), FDateTime(2026, 12, 31, 23, 7, 58, 999)),
		TEXT("C:/Users/Ada/.gemini/config/mcp_config.json.zorvek-backup-20261231-230758"));
	EXPECT_TEXT_EQ(FZorvekMCPBridgeConfigWriter::MakeTemporaryPath(TEXT("/x/settings.json")), TEXT("/x/settings.json.tmp"));
}
