#include "Server/ZorvekMCPBridgeRequestGuard.h"

#include "Containers/StringConv.h"
#include "HttpServerRequest.h"
#include "HttpServerResponse.h"

namespace
{
	// "name" or "name:port" with the name one of the loopback names.
	// Digits only: FString::IsNumeric also takes a sign, a '.' or a lone "-".
	bool IsPortText(const FString& Text)
	{
		if (Text.IsEmpty())
		{
			return false;
		}
		for (const TCHAR Character : Text)
		{
			if (!FChar::IsDigit(Character))
			{
				return false;
			}
		}
		return true;
	}

	bool IsLoopbackAuthority(const FString& Authority)
	{
		FString Name = Authority;
		if (Name.StartsWith(TEXT("[")))
		{
			const int32 Close = Name.Find(TEXT("]"));
			if (Close == INDEX_NONE)
			{
				return false;
			}
			const FString Rest = Name.Mid(Close + 1);
			Name = Name.Left(Close + 1);
			if (!Rest.IsEmpty() && !(Rest.StartsWith(TEXT(":")) && IsPortText(Rest.Mid(1))))
			{
				return false;
			}
		}
		else
		{
			FString HostName;
			FString PortText;
			if (Authority.Split(TEXT(":"), &HostName, &PortText))
			{
				Name = HostName;
				if (!IsPortText(PortText))
				{
					return false;
				}
			}
		}
		return Name.Equals(TEXT("127.0.0.1")) || Name.Equals(TEXT("localhost"), ESearchCase::IgnoreCase) || Name.Equals(TEXT("[::1]"));
	}

	// The engine splits header values on ','; a single header comes back whole when rejoined.
	bool FindHeader(const FHttpServerRequest& Request, const TCHAR* Name, FString& OutValue)
	{
		const TArray<FString>* Values = Request.Headers.Find(FString(Name));
		if (!Values)
		{
			return false;
		}
		OutValue = FString::Join(*Values, TEXT(",")).TrimStartAndEnd();
		return true;
	}
}

bool ZorvekMCPBridgeRequestGuard::IsLoopbackHost(const FString& HostHeader)
{
	return IsLoopbackAuthority(HostHeader.TrimStartAndEnd());
}

bool ZorvekMCPBridgeRequestGuard::IsLoopbackOrigin(const FString& OriginHeader)
{
	FString Authority = OriginHeader.TrimStartAndEnd();
	if (!Authority.RemoveFromStart(TEXT("http://"), ESearchCase::IgnoreCase) && !Authority.RemoveFromStart(TEXT("https://"), ESearchCase::IgnoreCase))
	{
		return false;
	}
	Authority.RemoveFromEnd(TEXT("/"));
	return !Authority.Contains(TEXT("/")) && !Authority.Contains(TEXT("@")) && IsLoopbackAuthority(Authority);
}

bool ZorvekMCPBridgeRequestGuard::RefuseForeignRequest(const FHttpServerRequest& Request, const FHttpResultCallback& OnComplete)
{
	FString Host;
	FString Origin;
	const bool bForeignHost = FindHeader(Request, TEXT("host"), Host) && !IsLoopbackHost(Host);
	const bool bForeignOrigin = FindHeader(Request, TEXT("origin"), Origin) && !IsLoopbackOrigin(Origin);
	if (!bForeignHost && !bForeignOrigin)
	{
		return false;
	}

	const FString Message = bForeignHost
		? FString(TEXT("Forbidden: the Zorvek MCP Bridge only answers requests addressed to 127.0.0.1, localhost or [::1]."))
		: FString(TEXT("Forbidden: the Zorvek MCP Bridge does not answer requests from web pages."));
	const FTCHARToUTF8 Utf8(*Message, Message.Len());
	TArray<uint8> Bytes(reinterpret_cast<const uint8*>(Utf8.Get()), Utf8.Length());
	TUniquePtr<FHttpServerResponse> Response = FHttpServerResponse::Create(MoveTemp(Bytes), FString(TEXT("text/plain; charset=utf-8")));
	Response->Code = EHttpServerResponseCodes::Forbidden;
	OnComplete(MoveTemp(Response));
	return true;
}
