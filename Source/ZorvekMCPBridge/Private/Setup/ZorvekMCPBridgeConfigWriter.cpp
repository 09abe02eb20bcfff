#include "Setup/ZorvekMCPBridgeConfigWriter.h"

#include "Dom/JsonObject.h"
#include "HAL/FileManager.h"
#include "Misc/FileHelper.h"
#include "Misc/Paths.h"
#include "Serialization/JsonReader.h"
#include "Serialization/JsonSerializer.h"
#include "Setup/ZorvekMCPBridgeAISetup.h"
#include "ZorvekMCPBridgeLog.h"

namespace
{
	bool Fail(FString& OutMessage, const FString& Message)
	{
		UE_LOG(LogZorvekMCPBridge, Warning, TEXT("%s"), *Message);
		OutMessage = Message;
		return false;
	}
}

FZorvekMCPBridgeConfigWriter::FZorvekMCPBridgeConfigWriter()
	: FZorvekMCPBridgeConfigWriter(IFileManager::Get(), []() { return FDateTime::Now(); })
{
}

FZorvekMCPBridgeConfigWriter::FZorvekMCPBridgeConfigWriter(IFileManager& InFileManager, TFunction<FDateTime()> InClock)
	: FileManager(InFileManager)
	, Clock(MoveTemp(InClock))
{
}

FString FZorvekMCPBridgeConfigWriter::MakeBackupPath(const FString& ConfigPath, const FDateTime& Time)
{
	return FString::Printf(TEXT("%s.zorvek-backup-%s"), *ConfigPath, *Time.ToString(TEXT("%Y%m%d-%H%M%S")));
}

FString FZorvekMCPBridgeConfigWriter::MakeTemporaryPath(const FString& ConfigPath)
{
	return ConfigPath + TEXT(".tmp");
}

bool FZorvekMCPBridgeConfigWriter::Write(const FZorvekMCPBridgeClientDescriptor& Client, const FString& EndpointUrl, FString& OutMessage) const
{
	OutMessage.Reset();
	const FString& ConfigPath = Client.ConfigPath;
	if (!Client.bConfigWriteEnabled || ConfigPath.IsEmpty() || Client.ConfigUrlKey.IsEmpty())
	{
		return Fail(OutMessage, FString::Printf(TEXT("The bridge does not write the configuration of %s; copy its snippet instead."), *Client.DisplayName));
	}

	FileManager.MakeDirectory(*FPaths::GetPath(ConfigPath), true);

	TSharedPtr<FJsonObject> Root = MakeShared<FJsonObject>();
	if (FileManager.FileExists(*ConfigPath))
	{
		FString ExistingText;
		if (!FFileHelper::LoadFileToString(ExistingText, *ConfigPath))
		{
			return Fail(OutMessage, FString::Printf(TEXT("Could not read %s"), *ConfigPath));
		}
		TSharedPtr<FJsonObject> Parsed;
		const TSharedRef<TJsonReader<TCHAR>> Reader = TJsonReaderFactory<TCHAR>::Create(ExistingText);
		if (!FJsonSerializer::Deserialize(Reader, Parsed) || !Parsed.IsValid())
		{
			return Fail(OutMessage, FString::Printf(TEXT("Config malformed; left untouched: %s"), *ConfigPath));
		}
		Root = Parsed;

		// A backup of the same second is replaced, even when it was made read-only.
		const FString BackupPath = MakeBackupPath(ConfigPath, Clock());
		if (FileManager.Copy(*BackupPath, *ConfigPath, true, true) != COPY_OK)
		{
			return Fail(OutMessage, FString::Printf(TEXT("Could not create backup %s"), *BackupPath));
		}
	}

	const TSharedPtr<FJsonObject>* ExistingServers = nullptr;
	TSharedPtr<FJsonObject> Servers;
	if (Root->TryGetObjectField(TEXT("mcpServers"), ExistingServers) && ExistingServers && ExistingServers->IsValid())
	{
		Servers = *ExistingServers;
	}
	else
	{
		Servers = MakeShared<FJsonObject>();
		Root->SetObjectField(TEXT("mcpServers"), Servers);
	}
	TSharedPtr<FJsonObject> Entry = MakeShared<FJsonObject>();
	Entry->SetStringField(Client.ConfigUrlKey, EndpointUrl);
	Servers->SetObjectField(ZorvekMCPBridgeAISetup::ServerName, Entry);

	FString UpdatedText;
	const TSharedRef<TJsonWriter<>> Writer = TJsonWriterFactory<>::Create(&UpdatedText);
	if (!FJsonSerializer::Serialize(Root.ToSharedRef(), Writer))
	{
		return Fail(OutMessage, TEXT("Could not serialize updated JSON config"));
	}

	// UTF-8 without a byte-order mark, whatever the text holds: the engine's automatic choice
	// would write UTF-16 as soon as one character is not ASCII (a home folder named José), and
	// the clients' JSON readers cannot read that.
	const FString TemporaryPath = MakeTemporaryPath(ConfigPath);
	if (!FFileHelper::SaveStringToFile(UpdatedText, *TemporaryPath, FFileHelper::EEncodingOptions::ForceUTF8WithoutBOM, &FileManager))
	{
		return Fail(OutMessage, FString::Printf(TEXT("Could not write temp config %s"), *TemporaryPath));
	}

	if (FileManager.FileExists(*ConfigPath) && !FileManager.Delete(*ConfigPath))
	{
		// The file is as it was; the new text has nowhere to go, so it is not left lying around.
		FileManager.Delete(*TemporaryPath, false, false, true);
		return Fail(OutMessage, FString::Printf(TEXT("Could not replace %s"), *ConfigPath));
	}

	// From here a failure leaves the old text only in the backup and the new only in the
	// temporary file; the message names the path so the user can finish by hand.
	if (!FileManager.Move(*ConfigPath, *TemporaryPath))
	{
		return Fail(OutMessage, FString::Printf(TEXT("Could not move temp config into place: %s"), *ConfigPath));
	}

	OutMessage = FString::Printf(TEXT("Updated %s. Restart or refresh the AI client."), *ConfigPath);
	UE_LOG(LogZorvekMCPBridge, Display, TEXT("%s"), *OutMessage);
	return true;
}

bool ZorvekMCPBridgeAISetup::WriteClientConfig(const FZorvekMCPBridgeClientDescriptor& Client, const FString& EndpointUrl, FString& OutMessage)
{
	const FZorvekMCPBridgeConfigWriter Writer;
	return Writer.Write(Client, EndpointUrl, OutMessage);
}
