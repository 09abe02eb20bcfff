#include "Setup/ZorvekMCPBridgeConfiguredEndpoint.h"

#include "Dom/JsonObject.h"
#include "HAL/FileManager.h"
#include "Misc/FileHelper.h"
#include "Serialization/JsonReader.h"
#include "Serialization/JsonSerializer.h"
#include "Setup/ZorvekMCPBridgeAISetup.h"

namespace
{
	const TCHAR* const HttpScheme = TEXT("http://");
	const TCHAR* const HttpsScheme = TEXT("https://");

	bool IsAllDigits(const FString& Text)
	{
		for (const TCHAR Character : Text)
		{
			if (!FChar::IsDigit(Character))
			{
				return false;
			}
		}
		return !Text.IsEmpty();
	}

	// Where an http or https address starts in the text, or INDEX_NONE.
	int32 FindAddressStart(const FString& Text)
	{
		const int32 Http = Text.Find(HttpScheme, ESearchCase::IgnoreCase);
		const int32 Https = Text.Find(HttpsScheme, ESearchCase::IgnoreCase);
		if (Http == INDEX_NONE || Https == INDEX_NONE)
		{
			return Http == INDEX_NONE ? Https : Http;
		}
		return FMath::Min(Http, Https);
	}
}

int32 ZorvekMCPBridgeAISetup::GetAddressPort(const FString& Address)
{
	FString Rest;
	int32 SchemePort = 0;
	if (Address.StartsWith(HttpScheme, ESearchCase::IgnoreCase))
	{
		Rest = Address.RightChop(FCString::Strlen(HttpScheme));
		SchemePort = 80;
	}
	else if (Address.StartsWith(HttpsScheme, ESearchCase::IgnoreCase))
	{
		Rest = Address.RightChop(FCString::Strlen(HttpsScheme));
		SchemePort = 443;
	}
	else
	{
		return INDEX_NONE;
	}

	// The authority runs to the path, query or fragment; user information ends at its last '@'.
	int32 AuthorityEnd = Rest.Len();
	for (int32 Index = 0; Index < Rest.Len(); ++Index)
	{
		if (Rest[Index] == TEXT('/') || Rest[Index] == TEXT('?') || Rest[Index] == TEXT('#'))
		{
			AuthorityEnd = Index;
			break;
		}
	}
	FString Authority = Rest.Left(AuthorityEnd);
	int32 AtIndex = INDEX_NONE;
	if (Authority.FindLastChar(TEXT('@'), AtIndex))
	{
		Authority.RightChopInline(AtIndex + 1);
	}

	// An IPv6 host is bracketed and full of colons; the port follows the bracket.
	int32 PortSeparator = INDEX_NONE;
	if (Authority.StartsWith(TEXT("[")))
	{
		int32 CloseIndex = INDEX_NONE;
		if (!Authority.FindChar(TEXT(']'), CloseIndex))
		{
			return INDEX_NONE;
		}
		if (CloseIndex + 1 < Authority.Len())
		{
			if (Authority[CloseIndex + 1] != TEXT(':'))
			{
				return INDEX_NONE;
			}
			PortSeparator = CloseIndex + 1;
		}
	}
	else
	{
		Authority.FindChar(TEXT(':'), PortSeparator);
	}
	if (PortSeparator == INDEX_NONE)
	{
		return SchemePort;
	}
	const FString PortText = Authority.RightChop(PortSeparator + 1);
	if (PortText.IsEmpty())
	{
		return SchemePort;
	}
	if (!IsAllDigits(PortText) || PortText.Len() > 5)
	{
		return INDEX_NONE;
	}
	const int32 Port = FCString::Atoi(*PortText);
	return Port <= 65535 ? Port : INDEX_NONE;
}

bool ZorvekMCPBridgeAISetup::ReadConfiguredAddress(const FZorvekMCPBridgeClientDescriptor& Client, FString& OutAddress)
{
	OutAddress.Reset();
	if (Client.ConfigPath.IsEmpty() || !IFileManager::Get().FileExists(*Client.ConfigPath))
	{
		return false;
	}
	FString Text;
	if (!FFileHelper::LoadFileToString(Text, *Client.ConfigPath))
	{
		return false;
	}
	TSharedPtr<FJsonObject> Root;
	if (!FJsonSerializer::Deserialize(TJsonReaderFactory<TCHAR>::Create(Text), Root) || !Root.IsValid())
	{
		return false;
	}
	const TSharedPtr<FJsonObject>* Servers = nullptr;
	const TSharedPtr<FJsonObject>* Entry = nullptr;
	if (!Root->TryGetObjectField(TEXT("mcpServers"), Servers) || !(*Servers)->TryGetObjectField(ServerName, Entry))
	{
		return false;
	}
	// The client's own key first; a hand-made entry may use another client's.
	TArray<FString> Keys;
	if (!Client.ConfigUrlKey.IsEmpty())
	{
		Keys.Add(Client.ConfigUrlKey);
	}
	for (const TCHAR* Key : {TEXT("url"), TEXT("httpUrl"), TEXT("serverUrl")})
	{
		Keys.AddUnique(FString(Key));
	}
	for (const FString& Key : Keys)
	{
		if ((*Entry)->TryGetStringField(Key, OutAddress))
		{
			return true;
		}
	}
	OutAddress.Reset();
	return false;
}

bool ZorvekMCPBridgeAISetup::FindListedAddress(const FString& ServerListOutput, FString& OutAddress)
{
	OutAddress.Reset();
	TArray<FString> Lines;
	ServerListOutput.ParseIntoArrayLines(Lines);
	for (const FString& Line : Lines)
	{
		if (!Line.Contains(ServerName))
		{
			continue;
		}
		const int32 Start = FindAddressStart(Line);
		if (Start == INDEX_NONE)
		{
			continue;
		}
		int32 End = Start;
		while (End < Line.Len() && !FChar::IsWhitespace(Line[End]) && Line[End] != TEXT('"') && Line[End] != TEXT('\''))
		{
			++End;
		}
		OutAddress = Line.Mid(Start, End - Start);
		// "(HTTP)" and punctuation after the address are not part of it.
		while (OutAddress.EndsWith(TEXT(",")) || OutAddress.EndsWith(TEXT(")")) || OutAddress.EndsWith(TEXT(";")))
		{
			OutAddress.LeftChopInline(1);
		}
		return true;
	}
	return false;
}

bool ZorvekMCPBridgeAISetup::NamesAnotherPort(const FString& Address, const FString& RunningEndpointUrl)
{
	if (RunningEndpointUrl.IsEmpty())
	{
		return false;
	}
	const int32 ConfiguredPort = GetAddressPort(Address);
	const int32 RunningPort = GetAddressPort(RunningEndpointUrl);
	return ConfiguredPort != INDEX_NONE && RunningPort != INDEX_NONE && ConfiguredPort != RunningPort;
}

FString ZorvekMCPBridgeAISetup::DescribeConfiguredPortMismatch(const FZorvekMCPBridgeClientDescriptor& Client, const FString& RunningEndpointUrl)
{
	FString Address;
	if (RunningEndpointUrl.IsEmpty() || !ReadConfiguredAddress(Client, Address) || !NamesAnotherPort(Address, RunningEndpointUrl))
	{
		return FString();
	}
	const TCHAR* Remedy = Client.bConfigWriteEnabled ? TEXT("Write config updates the entry.")
		: Client.HasInstallCommand() ? TEXT("Run the install command again, or correct the entry by hand.")
		: TEXT("Correct the entry by hand.");
	return FString::Printf(TEXT("%s sends %s to %s for %s, but the bridge now runs at %s. %s"),
		*Client.ConfigPath, *Client.DisplayName, *Address, ServerName, *RunningEndpointUrl, Remedy);
}
