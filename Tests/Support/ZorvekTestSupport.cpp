#include "ZorvekTestSupport.h"

#include "Async/Async.h"
#include "Dom/JsonValue.h"
#include "HAL/PlatformTime.h"
#include "Serialization/JsonReader.h"
#include "Serialization/JsonSerializer.h"

#include <arpa/inet.h>
#include <atomic>
#include <cstring>
#include <future>
#include <netinet/in.h>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>

void PrintTo(const FString& Value, std::ostream* Stream)
{
	*Stream << '"' << UECompatToUtf8(Value) << '"';
}

void PrintTo(const FName& Value, std::ostream* Stream)
{
	*Stream << UECompatToUtf8(Value.ToString());
}

void PrintTo(const TArray<FString>& Value, std::ostream* Stream)
{
	*Stream << '{';
	for (int32 Index = 0; Index < Value.Num(); ++Index)
	{
		*Stream << (Index > 0 ? ", " : "") << '"' << UECompatToUtf8(Value[Index]) << '"';
	}
	*Stream << '}';
}

FLogCapture::FLogCapture()
{
	GLog->AddOutputDevice(this);
}

FLogCapture::~FLogCapture()
{
	GLog->RemoveOutputDevice(this);
}

void FLogCapture::Serialize(const TCHAR* Text, ELogVerbosity::Type Verbosity, const FName& Category)
{
	std::lock_guard<std::mutex> Lock(Mutex);
	Lines.Add(FLine{Category.ToString(), Verbosity, FString(Text)});
}

TArray<FLogCapture::FLine> FLogCapture::GetLines() const
{
	std::lock_guard<std::mutex> Lock(Mutex);
	return Lines;
}

bool FLogCapture::Contains(const FString& Text) const
{
	return Count(Text) > 0;
}

int32 FLogCapture::Count(const FString& Text) const
{
	std::lock_guard<std::mutex> Lock(Mutex);
	int32 Found = 0;
	for (const FLine& Line : Lines)
	{
		Found += Line.Text.Equals(Text) ? 1 : 0;
	}
	return Found;
}

ELogVerbosity::Type FLogCapture::VerbosityOf(const FString& Text) const
{
	std::lock_guard<std::mutex> Lock(Mutex);
	for (const FLine& Line : Lines)
	{
		if (Line.Text.Equals(Text))
		{
			return Line.Verbosity;
		}
	}
	return ELogVerbosity::NoLogging;
}

void FLogCapture::Clear()
{
	std::lock_guard<std::mutex> Lock(Mutex);
	Lines.Reset();
}

TSharedPtr<FJsonObject> ParseJsonObject(const FString& Text)
{
	TSharedPtr<FJsonObject> Object;
	if (!FJsonSerializer::Deserialize(TJsonReaderFactory<>::Create(Text), Object))
	{
		return nullptr;
	}
	return Object;
}

TSharedPtr<FJsonObject> ParseJsonObject(const std::string& Utf8Text)
{
	return ParseJsonObject(UECompatFromUtf8(Utf8Text));
}

FString ToCondensedJson(const TSharedPtr<FJsonObject>& Object)
{
	FString Text;
	FJsonSerializer::Serialize(Object, TJsonWriterFactory<TCHAR, TCondensedJsonPrintPolicy<TCHAR>>::Create(&Text));
	return Text;
}

TArray<FString> JsonKeysOf(const TSharedPtr<FJsonObject>& Object)
{
	TArray<FString> Keys;
	for (const auto& Pair : Object->Values)
	{
		Keys.Add(Pair.Key);
	}
	return Keys;
}

TArray<FString> JsonStringsOf(const TArray<TSharedPtr<FJsonValue>>& Values)
{
	TArray<FString> Strings;
	for (const TSharedPtr<FJsonValue>& Value : Values)
	{
		Strings.Add(Value->AsString());
	}
	return Strings;
}

bool PumpGameThreadUntil(const std::function<bool()>& Predicate, double TimeoutSeconds)
{
	const double Deadline = FPlatformTime::Seconds() + TimeoutSeconds;
	while (!Predicate())
	{
		if (FPlatformTime::Seconds() > Deadline)
		{
			return false;
		}
		FGameThreadTaskQueue::Get().ProcessPendingTasks();
		FGameThreadTaskQueue::Get().WaitForTasks(0.005);
	}
	FGameThreadTaskQueue::Get().ProcessPendingTasks();
	return true;
}

const std::string* FRawHttpResponse::FindHeader(const std::string& Name) const
{
	for (const auto& Header : Headers)
	{
		if (Header.first.size() == Name.size() && strncasecmp(Header.first.c_str(), Name.c_str(), Name.size()) == 0)
		{
			return &Header.second;
		}
	}
	return nullptr;
}

namespace
{
	FRawHttpResponse ReadResponse(int Descriptor)
	{
		FRawHttpResponse Response;
		std::string Data;
		char Buffer[65536];
		size_t HeaderEnd = std::string::npos;
		size_t ContentLength = 0;
		while (true)
		{
			const ssize_t Read = ::recv(Descriptor, Buffer, sizeof(Buffer), 0);
			if (Read <= 0)
			{
				break;
			}
			Data.append(Buffer, (size_t)Read);
			if (HeaderEnd == std::string::npos)
			{
				HeaderEnd = Data.find("\r\n\r\n");
				if (HeaderEnd != std::string::npos)
				{
					const std::string Head = Data.substr(0, HeaderEnd);
					size_t LineStart = Head.find("\r\n");
					Response.Status = std::atoi(Head.substr(Head.find(' ') + 1, 3).c_str());
					while (LineStart != std::string::npos)
					{
						const size_t NextLine = Head.find("\r\n", LineStart + 2);
						const std::string Line = Head.substr(LineStart + 2, NextLine == std::string::npos ? std::string::npos : NextLine - LineStart - 2);
						const size_t Colon = Line.find(':');
						if (Colon != std::string::npos)
						{
							std::string Value = Line.substr(Colon + 1);
							Value.erase(0, Value.find_first_not_of(' '));
							Response.Headers.emplace_back(Line.substr(0, Colon), Value);
						}
						LineStart = NextLine;
					}
					if (const std::string* Length = Response.FindHeader("content-length"))
					{
						ContentLength = (size_t)std::strtoull(Length->c_str(), nullptr, 10);
					}
				}
			}
			if (HeaderEnd != std::string::npos && Data.size() >= HeaderEnd + 4 + ContentLength)
			{
				Response.Body = Data.substr(HeaderEnd + 4, ContentLength);
				Response.bReceived = true;
				break;
			}
		}
		return Response;
	}
}

FRawHttpResponse SendRawHttpWithoutPumping(int Port, const std::string& RequestBytes)
{
	FRawHttpResponse Response;
	const int Descriptor = ::socket(AF_INET, SOCK_STREAM, 0);
	sockaddr_in Address{};
	Address.sin_family = AF_INET;
	Address.sin_port = htons((uint16_t)Port);
	Address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
	timeval Timeout{10, 0};
	::setsockopt(Descriptor, SOL_SOCKET, SO_RCVTIMEO, &Timeout, sizeof(Timeout));
	if (::connect(Descriptor, reinterpret_cast<sockaddr*>(&Address), sizeof(Address)) == 0)
	{
		size_t Sent = 0;
		while (Sent < RequestBytes.size())
		{
			const ssize_t Written = ::send(Descriptor, RequestBytes.data() + Sent, RequestBytes.size() - Sent, MSG_NOSIGNAL);
			if (Written <= 0)
			{
				break;
			}
			Sent += (size_t)Written;
		}
		Response = ReadResponse(Descriptor);
	}
	::close(Descriptor);
	return Response;
}

FRawHttpResponse SendRawHttp(int Port, const std::string& RequestBytes, double TimeoutSeconds)
{
	std::atomic<bool> bDone{false};
	std::future<FRawHttpResponse> Pending = std::async(std::launch::async, [Port, RequestBytes, &bDone]()
	{
		FRawHttpResponse Response = SendRawHttpWithoutPumping(Port, RequestBytes);
		bDone = true;
		return Response;
	});
	PumpGameThreadUntil([&bDone]() { return bDone.load(); }, TimeoutSeconds);
	return Pending.get();
}

FRawHttpResponse PostMcp(int Port, const std::string& Body, const std::vector<std::string>& ExtraHeaderLines)
{
	std::string Request = "POST /mcp HTTP/1.1\r\nHost: 127.0.0.1:" + std::to_string(Port) + "\r\nContent-Type: application/json\r\nConnection: close\r\n";
	for (const std::string& Line : ExtraHeaderLines)
	{
		Request += Line + "\r\n";
	}
	Request += "Content-Length: " + std::to_string(Body.size()) + "\r\n\r\n" + Body;
	return SendRawHttp(Port, Request);
}

FPortBlocker::FPortBlocker(int Port)
{
	Descriptor = ::socket(AF_INET, SOCK_STREAM, 0);
	// As most servers do, so connections of earlier tests lingering in TIME_WAIT do not matter.
	int Yes = 1;
	::setsockopt(Descriptor, SOL_SOCKET, SO_REUSEADDR, &Yes, sizeof(Yes));
	sockaddr_in Address{};
	Address.sin_family = AF_INET;
	Address.sin_port = htons((uint16_t)Port);
	Address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
	if (::bind(Descriptor, reinterpret_cast<sockaddr*>(&Address), sizeof(Address)) != 0 || ::listen(Descriptor, 4) != 0)
	{
		::close(Descriptor);
		Descriptor = -1;
	}
}

FPortBlocker::~FPortBlocker()
{
	if (Descriptor >= 0)
	{
		::close(Descriptor);
	}
}
