// Connections and listener threads of the host's HTTP server: answers are not held back by the
// client's delayed ACK, idle keep-alive connections never keep a new client waiting, and neither
// an idle connection nor a listener stopped at once holds up shutting the module down.
#include "HAL/PlatformTime.h"
#include "HttpServerModule.h"
#include "HttpServerRequest.h"
#include "HttpServerResponse.h"
#include "ZorvekTestSupport.h"

#include <arpa/inet.h>
#include <chrono>
#include <future>
#include <netinet/in.h>
#include <poll.h>
#include <string>
#include <sys/socket.h>
#include <unistd.h>
#include <vector>

namespace
{
	// Far from the endpoint's ports 8765-8789.
	constexpr uint32 ShutdownTestPort = 28791;
	constexpr uint32 KeepAliveTestPort = 28792;
	constexpr uint32 QuickStopTestPort = 28793;
	constexpr uint32 ManyIdleTestPort = 28794;

	int ConnectToLoopback(uint32 Port)
	{
		const int Descriptor = ::socket(AF_INET, SOCK_STREAM, 0);
		sockaddr_in Address{};
		Address.sin_family = AF_INET;
		Address.sin_port = htons((uint16_t)Port);
		Address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
		if (::connect(Descriptor, reinterpret_cast<sockaddr*>(&Address), sizeof(Address)) != 0)
		{
			::close(Descriptor);
			return -1;
		}
		return Descriptor;
	}

	// Reads until the text arrives, the peer closes or nothing comes within the timeout.
	std::string ReadUntil(int Descriptor, const std::string& Text, int TimeoutMilliseconds, bool& bOutClosed)
	{
		std::string Data;
		bOutClosed = false;
		pollfd Poll{Descriptor, POLLIN, 0};
		while ((Text.empty() || Data.find(Text) == std::string::npos) && ::poll(&Poll, 1, TimeoutMilliseconds) > 0)
		{
			char Buffer[4096];
			const ssize_t Read = ::recv(Descriptor, Buffer, sizeof(Buffer), 0);
			if (Read <= 0)
			{
				bOutClosed = true;
				break;
			}
			Data.append(Buffer, (size_t)Read);
		}
		return Data;
	}

	// A POST route on its own port that answers every request with "answered".
	class FAnsweringRoute
	{
	public:
		explicit FAnsweringRoute(uint32 Port)
		{
			FHttpServerModule::Get().StartAllListeners();
			Router = FHttpServerModule::Get().GetHttpRouter(Port, true);
			if (Router.IsValid())
			{
				Route = Router->BindRoute(FHttpPath(TEXT("/answer")), EHttpServerRequestVerbs::VERB_POST,
					FHttpRequestHandler::CreateLambda([](const FHttpServerRequest&, const FHttpResultCallback& OnComplete)
					{
						OnComplete(FHttpServerResponse::Create(TEXT("answered"), TEXT("text/plain")));
						return true;
					}));
			}
		}

		~FAnsweringRoute()
		{
			if (Router.IsValid() && Route.IsValid())
			{
				Router->UnbindRoute(Route);
			}
		}

		bool IsBound() const { return Route.IsValid(); }

		// One keep-alive request on the connection; true when its answer arrived.
		static bool Exchange(int Client, bool& bOutClosed)
		{
			const std::string Request = "POST /answer HTTP/1.1\r\nHost: 127.0.0.1\r\nContent-Length: 0\r\n\r\n";
			if (::send(Client, Request.data(), Request.size(), MSG_NOSIGNAL) != (ssize_t)Request.size())
			{
				return false;
			}
			return ReadUntil(Client, "answered", 2000, bOutClosed).find("answered") != std::string::npos;
		}

	private:
		TSharedPtr<IHttpRouter> Router;
		FHttpRouteHandle Route;
	};
}

TEST(CompatHttpServerConnection, KeepAliveAnswersAreNotHeldBackByDelayedAck)
{
	FAnsweringRoute Route(KeepAliveTestPort);
	ASSERT_TRUE(Route.IsBound()) << "port " << KeepAliveTestPort << " is taken";
	const int Client = ConnectToLoopback(KeepAliveTestPort);
	ASSERT_GE(Client, 0);

	// The server writes a response's head and body separately; with Nagle's algorithm on, the
	// body of every answer after the first waits about 40 ms for the client's delayed ACK.
	constexpr int Exchanges = 20;
	const double Started = FPlatformTime::Seconds();
	for (int Exchange = 0; Exchange < Exchanges; ++Exchange)
	{
		bool bClosed = false;
		ASSERT_TRUE(FAnsweringRoute::Exchange(Client, bClosed)) << "exchange " << Exchange;
	}
	EXPECT_LT(FPlatformTime::Seconds() - Started, 0.4) << Exchanges << " keep-alive exchanges";
	::close(Client);
}

TEST(CompatHttpServerConnection, IdleKeepAliveConnectionsNeverKeepANewClientWaiting)
{
	FAnsweringRoute Route(ManyIdleTestPort);
	ASSERT_TRUE(Route.IsBound()) << "port " << ManyIdleTestPort << " is taken";

	// 64 clients each make one request and then leave their connection open and idle, as MCP
	// clients do. The engine's server polls every connection from one loop, so idle ones cost a
	// new client nothing; they stay open for its 15 s keep-alive (unreal-api-core.md §1.10).
	constexpr int IdleClients = 64;
	std::vector<int> Idle;
	for (int Index = 0; Index < IdleClients; ++Index)
	{
		const int Client = ConnectToLoopback(ManyIdleTestPort);
		ASSERT_GE(Client, 0) << "client " << Index;
		Idle.push_back(Client);
		bool bClosed = false;
		ASSERT_TRUE(FAnsweringRoute::Exchange(Client, bClosed)) << "idle client " << Index << " was never answered";
	}

	// The next client is answered at once, not when an idle connection times out. A guard well
	// under the 15 s keep-alive makes a waiting client fail the test instead of hanging it.
	const int NewClient = ConnectToLoopback(ManyIdleTestPort);
	ASSERT_GE(NewClient, 0);
	const std::string Request = "POST /answer HTTP/1.1\r\nHost: 127.0.0.1\r\nContent-Length: 0\r\n\r\n";
	ASSERT_EQ(::send(NewClient, Request.data(), Request.size(), MSG_NOSIGNAL), (ssize_t)Request.size());
	bool bClosed = false;
	const bool bAnswered = ReadUntil(NewClient, "answered", 5000, bClosed).find("answered") != std::string::npos;
	EXPECT_TRUE(bAnswered) << "client " << IdleClients + 1 << " was kept waiting";

	// The idle connections were not dropped to make room: the first one still answers.
	EXPECT_TRUE(FAnsweringRoute::Exchange(Idle.front(), bClosed)) << "the oldest idle connection was closed";
	::close(NewClient);
	for (const int Client : Idle)
	{
		::close(Client);
	}
}

TEST(CompatHttpServerConnection, IdleKeepAliveConnectionDoesNotHoldUpShutdown)
{
	FAnsweringRoute Route(ShutdownTestPort);
	ASSERT_TRUE(Route.IsBound()) << "port " << ShutdownTestPort << " is taken";
	const int Client = ConnectToLoopback(ShutdownTestPort);
	ASSERT_GE(Client, 0);

	// One answered request, then the connection stays open and idle, as an MCP client leaves it.
	bool bClosed = false;
	EXPECT_TRUE(FAnsweringRoute::Exchange(Client, bClosed));
	EXPECT_FALSE(bClosed) << "the server closed a keep-alive connection after one request";

	const double Started = FPlatformTime::Seconds();
	FHttpServerModule::Get().ShutdownModule();
	// Without closing idle connections the listener thread would wait out the 15 s keep-alive.
	EXPECT_LT(FPlatformTime::Seconds() - Started, 5.0);

	ReadUntil(Client, std::string(), 2000, bClosed);
	EXPECT_TRUE(bClosed) << "the idle connection is still open after shut-down";
	::close(Client);
}

TEST(CompatHttpServerConnection, ListenerStoppedRightAfterStartingDoesNotHoldUpShutdown)
{
	FHttpServerModule& Module = FHttpServerModule::Get();
	for (int Attempt = 0; Attempt < 20; ++Attempt)
	{
		Module.StartAllListeners();
		ASSERT_TRUE(Module.GetHttpRouter(QuickStopTestPort, true).IsValid()) << "port " << QuickStopTestPort << " is taken";
		Module.StopAllListeners();
	}
	// Shutting down joins every stopped listener's thread; one that missed its stop accepts forever.
	std::future<void> Shutdown = std::async(std::launch::async, [&Module]() { Module.ShutdownModule(); });
	EXPECT_EQ(Shutdown.wait_for(std::chrono::seconds(10)), std::future_status::ready) << "a stopped listener is still accepting";
}
