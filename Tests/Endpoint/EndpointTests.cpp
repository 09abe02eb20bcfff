// The real endpoint on loopback: port choice, the HTTP answers MCP clients see, and the
// drive-by protection. These tests own ports 8765-8789 while they run.
#include "ZorvekTestSupport.h"

#include "Async/Async.h"
#include "HAL/PlatformProcess.h"
#include "HAL/PlatformTime.h"
#include "HttpServerModule.h"
#include "Server/ZorvekMCPBridgeServer.h"

#include <atomic>
#include <memory>
#include <thread>

namespace
{
	class Endpoint : public ::testing::Test
	{
	protected:
		void SetUp() override
		{
			Server = MakeShared<FZorvekMCPBridgeServer, ESPMode::ThreadSafe>();
		}
		void TearDown() override
		{
			Server->Stop();
			PumpGameThreadUntil([]() { return true; });
		}

		bool StartDefault()
		{
			return Server->Start(FZorvekMCPBridgeServer::DefaultPort);
		}

		TSharedPtr<FZorvekMCPBridgeServer, ESPMode::ThreadSafe> Server;
		FLogCapture Log;
	};

	TSharedPtr<FJsonObject> BodyJson(const FRawHttpResponse& Response)
	{
		return ParseJsonObject(Response.Body);
	}

	const std::string ParseErrorBody = "{\r\n\t\"jsonrpc\": \"2.0\",\r\n\t\"id\": null,\r\n\t\"error\":\r\n\t{\r\n\t\t\"code\": -32700,\r\n\t\t\"message\": \"Parse error\"\r\n\t}\r\n}";
}

TEST_F(Endpoint, StartsOnTheFirstPortAndAnswersPingExactly)
{
	ASSERT_TRUE(StartDefault());
	EXPECT_EQ(Server->GetPort(), 8765);
	EXPECT_TRUE(Server->GetEndpointUrl().Equals(TEXT("http://127.0.0.1:8765/mcp")));
	EXPECT_TRUE(Log.Contains(TEXT("Zorvek MCP Bridge local TCP verification for 127.0.0.1:8765: success")));

	const FRawHttpResponse Response = PostMcp(8765, "{\"jsonrpc\":\"2.0\",\"id\":7,\"method\":\"ping\"}");
	EXPECT_EQ(Response.Status, 200);
	ASSERT_NE(Response.FindHeader("content-type"), nullptr);
	EXPECT_EQ(*Response.FindHeader("content-type"), "application/json; charset=utf-8");
	EXPECT_EQ(Response.Body, "{\r\n\t\"jsonrpc\": \"2.0\",\r\n\t\"id\": 7,\r\n\t\"result\":\r\n\t{\r\n\t}\r\n}");
}

TEST_F(Endpoint, StartingTwiceIsHarmlessAndStopResetsTheAddress)
{
	ASSERT_TRUE(StartDefault());
	EXPECT_TRUE(StartDefault());
	EXPECT_TRUE(Log.Contains(TEXT("Zorvek MCP Bridge already running at http://127.0.0.1:8765/mcp")));
	Server->Stop();
	EXPECT_FALSE(Server->IsRunning());
	EXPECT_TRUE(Server->GetEndpointUrl().Equals(TEXT("stopped")));
	EXPECT_FALSE(PostMcp(8765, "{\"method\":\"ping\"}").bReceived);
	// The same object starts again and serves.
	ASSERT_TRUE(StartDefault());
	EXPECT_EQ(PostMcp(8765, "{\"method\":\"ping\"}").Status, 200);
}

TEST_F(Endpoint, TakenPortMovesTheEndpointToTheNextOne)
{
	FPortBlocker Blocker(8765);
	ASSERT_TRUE(Blocker.IsHeld());
	ASSERT_TRUE(StartDefault());
	EXPECT_EQ(Server->GetPort(), 8766);
	EXPECT_TRUE(Log.Contains(TEXT("HTTPServer failed to create/listen with router for port 8765")));
	EXPECT_EQ(Log.VerbosityOf(TEXT("HTTPServer failed to create/listen with router for port 8765")), ELogVerbosity::Warning);
	EXPECT_EQ(PostMcp(8766, "{\"id\":1,\"method\":\"ping\"}").Status, 200);
}

TEST_F(Endpoint, AllPortsTakenFailsWithOneErrorLineAndNoListener)
{
	std::vector<std::unique_ptr<FPortBlocker>> Blockers;
	for (int Port = 8765; Port <= 8789; ++Port)
	{
		Blockers.push_back(std::make_unique<FPortBlocker>(Port));
		ASSERT_TRUE(Blockers.back()->IsHeld()) << Port;
	}
	FPortBlocker Outside(8790);
	EXPECT_FALSE(StartDefault());
	EXPECT_FALSE(Server->IsRunning());
	EXPECT_EQ(Server->GetPort(), 0);
	EXPECT_EQ(Log.VerbosityOf(TEXT("Zorvek MCP Bridge failed to bind a port starting at 8765")), ELogVerbosity::Error);
	EXPECT_TRUE(Log.Contains(TEXT("Trying MCP endpoint port 8789")));
	EXPECT_FALSE(Log.Contains(TEXT("Trying MCP endpoint port 8790")));
	Blockers.clear();
	EXPECT_FALSE(PostMcp(8765, "{\"method\":\"ping\"}").bReceived);
}

TEST_F(Endpoint, ASecondBridgeInTheSameProcessTakesTheNextPort)
{
	ASSERT_TRUE(StartDefault());
	TSharedRef<FZorvekMCPBridgeServer, ESPMode::ThreadSafe> Second = MakeShared<FZorvekMCPBridgeServer, ESPMode::ThreadSafe>();
	ASSERT_TRUE(Second->Start(FZorvekMCPBridgeServer::DefaultPort));
	EXPECT_EQ(Second->GetPort(), 8766);
	EXPECT_TRUE(Log.Contains(TEXT("HTTPServer failed to bind POST /mcp on port 8765")));
	Second->Stop();
}

TEST_F(Endpoint, BodiesThatAreNotOneJsonObjectGetTheParseErrorEnvelope)
{
	ASSERT_TRUE(StartDefault());
	const char* const Bodies[] = {"", "[]", "[{\"jsonrpc\":\"2.0\",\"id\":1,\"method\":\"ping\"}]", "42", "\"ping\"", "{\"method\":", "not json", "\xFF\xFE{"};
	for (const char* Body : Bodies)
	{
		const FRawHttpResponse Response = PostMcp(8765, Body);
		EXPECT_EQ(Response.Status, 200) << Body;
		EXPECT_EQ(Response.Body, ParseErrorBody) << Body;
	}
}

TEST_F(Endpoint, ATrailingNulIsDroppedBeforeParsing)
{
	ASSERT_TRUE(StartDefault());
	const std::string Body = std::string("{\"id\":3,\"method\":\"ping\"}") + '\0';
	const TSharedPtr<FJsonObject> Envelope = BodyJson(PostMcp(8765, Body));
	ASSERT_TRUE(Envelope.IsValid());
	EXPECT_EQ(Envelope->GetNumberField(TEXT("id")), 3);
}

TEST_F(Endpoint, UnansweredNotificationIsAnEmpty200WithoutContentType)
{
	ASSERT_TRUE(StartDefault());
	const FRawHttpResponse Response = PostMcp(8765, "{\"jsonrpc\":\"2.0\",\"method\":\"notifications/initialized\"}");
	EXPECT_EQ(Response.Status, 200);
	EXPECT_TRUE(Response.Body.empty());
	EXPECT_EQ(Response.FindHeader("content-type"), nullptr);
}

TEST_F(Endpoint, ErrorsAreStill200s)
{
	ASSERT_TRUE(StartDefault());
	const FRawHttpResponse Unknown = PostMcp(8765, "{\"id\":1,\"method\":\"tools/call\",\"params\":{\"name\":\"nope\"}}");
	EXPECT_EQ(Unknown.Status, 200);
	const TSharedPtr<FJsonObject> Envelope = BodyJson(Unknown);
	ASSERT_TRUE(Envelope.IsValid());
	EXPECT_TRUE(Envelope->GetObjectField(TEXT("error"))->GetStringField(TEXT("message")).Equals(TEXT("Unknown tool: nope")));
	// Other verbs and paths are the HTTP server's, not the endpoint's.
	EXPECT_EQ(SendRawHttp(8765, "GET /mcp HTTP/1.1\r\nHost: 127.0.0.1:8765\r\nConnection: close\r\n\r\n").Status, 404);
	EXPECT_EQ(SendRawHttp(8765, "POST /other HTTP/1.1\r\nHost: 127.0.0.1:8765\r\nContent-Length: 2\r\nConnection: close\r\n\r\n{}").Status, 404);
}

TEST_F(Endpoint, LargeAndOddBodiesNeverStopTheEndpoint)
{
	ASSERT_TRUE(StartDefault());
	const std::string Large = "{\"id\":1,\"method\":\"ping\",\"params\":{\"pad\":\"" + std::string(4 * 1024 * 1024, 'x') + "\"}}";
	EXPECT_EQ(PostMcp(8765, Large).Status, 200);
	const std::string Deep = std::string(200000, '[');
	EXPECT_EQ(PostMcp(8765, Deep).Body, ParseErrorBody);
	const std::string Hostile = "{\"id\":1,\"method\":\"tools/call\",\"params\":{\"name\":\"" + std::string(100000, 'a') + "\",\"arguments\":[1,2]}}";
	EXPECT_EQ(PostMcp(8765, Hostile).Status, 200);
	EXPECT_EQ(PostMcp(8765, "{\"id\":2,\"method\":\"ping\"}").Status, 200);
}

TEST_F(Endpoint, RequestsFromForeignHostsAndWebPagesAreRefused)
{
	ASSERT_TRUE(StartDefault());
	const std::string Ping = "{\"id\":1,\"method\":\"ping\"}";
	auto WithHost = [&Ping](const std::string& Host, const std::vector<std::string>& Extra)
	{
		std::string Request = "POST /mcp HTTP/1.1\r\nHost: " + Host + "\r\nConnection: close\r\n";
		for (const std::string& Line : Extra)
		{
			Request += Line + "\r\n";
		}
		return SendRawHttp(8765, Request + "Content-Length: " + std::to_string(Ping.size()) + "\r\n\r\n" + Ping);
	};
	for (const char* Host : {"127.0.0.1:8765", "localhost:8765", "LOCALHOST", "[::1]:8765", "127.0.0.1"})
	{
		EXPECT_EQ(WithHost(Host, {}).Status, 200) << Host;
	}
	for (const char* Host : {"evil.example:8765", "127.0.0.1.evil.example", "localhost.", "127.0.0.2:8765", "localhost:80x", "[::2]:8765"})
	{
		EXPECT_EQ(WithHost(Host, {}).Status, 403) << Host;
	}
	for (const char* Origin : {"http://localhost:3000", "https://127.0.0.1", "http://[::1]:8080"})
	{
		EXPECT_EQ(WithHost("127.0.0.1:8765", {std::string("Origin: ") + Origin}).Status, 200) << Origin;
	}
	for (const char* Origin : {"https://evil.example", "null", "http://localhost.evil.example", "http://evil@localhost", "file://"})
	{
		EXPECT_EQ(WithHost("127.0.0.1:8765", {std::string("Origin: ") + Origin}).Status, 403) << Origin;
	}
}

TEST_F(Endpoint, AStopRacingAQueuedRequestStillAnswersIt)
{
	ASSERT_TRUE(StartDefault());
	// The request is parsed and queued for the game thread; the server stops before the task
	// runs; the queued task keeps the server alive and answers.
	std::atomic<bool> bDone{false};
	FRawHttpResponse Response;
	std::thread Client([&]()
	{
		Response = SendRawHttpWithoutPumping(8765, "POST /mcp HTTP/1.1\r\nHost: 127.0.0.1\r\nContent-Length: 24\r\nConnection: close\r\n\r\n{\"id\":9,\"method\":\"ping\"}");
		bDone = true;
	});
	const double Deadline = FPlatformTime::Seconds() + 10.0;
	while (FGameThreadTaskQueue::Get().NumPending() == 0 && FPlatformTime::Seconds() < Deadline)
	{
		FPlatformProcess::Sleep(0.001f);
	}
	ASSERT_EQ(FGameThreadTaskQueue::Get().NumPending(), 1);
	TWeakPtr<FZorvekMCPBridgeServer, ESPMode::ThreadSafe> Weak = Server;
	Server->Stop();
	Server.Reset();
	EXPECT_TRUE(Weak.IsValid());
	EXPECT_TRUE(PumpGameThreadUntil([&bDone]() { return bDone.load(); }));
	Client.join();
	EXPECT_EQ(Response.Status, 200);
	EXPECT_NE(Response.Body.find("\"id\": 9"), std::string::npos);
	Server = MakeShared<FZorvekMCPBridgeServer, ESPMode::ThreadSafe>();
}
