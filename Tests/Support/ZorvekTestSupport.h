// Shared helpers of the host tests: log capture, JSON parsing, a game-thread pump and a raw
// loopback HTTP client.
#pragma once

#include "CoreMinimal.h"
#include "Dom/JsonObject.h"

#include <gtest/gtest.h>

#include <functional>
#include <mutex>
#include <ostream>
#include <string>
#include <vector>

void PrintTo(const FString& Value, std::ostream* Stream);
void PrintTo(const FName& Value, std::ostream* Stream);
void PrintTo(const TArray<FString>& Value, std::ostream* Stream);

// Collects log lines while it lives.
class FLogCapture : public FOutputDevice
{
public:
	struct FLine
	{
		FString Category;
		ELogVerbosity::Type Verbosity;
		FString Text;
	};

	FLogCapture();
	~FLogCapture() override;
	void Serialize(const TCHAR* Text, ELogVerbosity::Type Verbosity, const FName& Category) override;
	bool CanBeUsedOnAnyThread() const override { return true; }

	TArray<FLine> GetLines() const;
	bool Contains(const FString& Text) const;
	int32 Count(const FString& Text) const;
	// The verbosity of the first line with exactly this text, or NoLogging when there is none.
	ELogVerbosity::Type VerbosityOf(const FString& Text) const;
	void Clear();

private:
	mutable std::mutex Mutex;
	TArray<FLine> Lines;
};

TSharedPtr<FJsonObject> ParseJsonObject(const FString& Text);
TSharedPtr<FJsonObject> ParseJsonObject(const std::string& Utf8Text);
FString ToCondensedJson(const TSharedPtr<FJsonObject>& Object);
// The member names of an object in their order, and the strings of an array of strings.
TArray<FString> JsonKeysOf(const TSharedPtr<FJsonObject>& Object);
TArray<FString> JsonStringsOf(const TArray<TSharedPtr<FJsonValue>>& Values);

// Runs game-thread tasks on the calling thread until the predicate holds or the time is up.
bool PumpGameThreadUntil(const std::function<bool()>& Predicate, double TimeoutSeconds = 10.0);

struct FRawHttpResponse
{
	int Status = 0;
	std::vector<std::pair<std::string, std::string>> Headers;
	std::string Body;
	bool bReceived = false;

	// The first header of that name (case-insensitive), or nullptr.
	const std::string* FindHeader(const std::string& Name) const;
};

// Sends the bytes as they are to 127.0.0.1:Port and reads one response, while this thread
// keeps running game-thread tasks (the server answers on the game thread).
FRawHttpResponse SendRawHttp(int Port, const std::string& RequestBytes, double TimeoutSeconds = 10.0);
// The same from a thread that is not the game thread: it only waits for the answer.
FRawHttpResponse SendRawHttpWithoutPumping(int Port, const std::string& RequestBytes);
// A POST of the body to /mcp with a loopback Host header and Content-Length.
FRawHttpResponse PostMcp(int Port, const std::string& Body, const std::vector<std::string>& ExtraHeaderLines = {});

// Holds a loopback TCP port as another process would (bound and listening).
class FPortBlocker
{
public:
	explicit FPortBlocker(int Port);
	~FPortBlocker();
	bool IsHeld() const { return Descriptor >= 0; }

private:
	int Descriptor = -1;
};
