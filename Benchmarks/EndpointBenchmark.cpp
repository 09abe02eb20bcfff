// Endpoint benchmark: requests per second and latency percentiles of the MCP endpoint on
// loopback, beside a bare cpp-httplib server answering a fixed body (the ceiling). One process:
// the main thread acts as the editor's game thread, as zorvek-bridge-host's loop does, while
// load threads keep HTTP/1.1 keep-alive connections busy with POSTs for a fixed time per case.
//
//   EndpointBenchmark [--seconds N] [--warmup N] [--rounds N] [--connections 1,16] [--cases ping,...] [--base-port P]
#include "Async/Async.h"
#include "Containers/Ticker.h"
#include "CoreMinimal.h"
#include "HAL/PlatformTime.h"
#include "HttpServerModule.h"
#include "Serialization/JsonReader.h"
#include "Serialization/JsonSerializer.h"
#include "Server/ZorvekMCPBridgeServer.h"

#include <httplib.h>

#include <algorithm>
#include <arpa/inet.h>
#include <atomic>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <string>
#include <sys/socket.h>
#include <thread>
#include <time.h>
#include <unistd.h>
#include <vector>

namespace
{
	// Outside the endpoint's own range 8765-8789, so the benchmark runs beside an editor or host.
	constexpr uint16 DefaultBenchmarkBasePort = 18765;
	// Every connection stops after this many requests even if the case's time is not up.
	constexpr int64 MaxRequestsPerConnection = 2000000;
	constexpr int SocketTimeoutSeconds = 10;

	struct FBenchmarkOptions
	{
		double Seconds = 1.0;
		double WarmupSeconds = 0.2;
		// Rounds over all cases, each case right after the ceiling of its round. Each figure is
		// the round with the median throughput and the ratio is the median of the rounds' ratios,
		// so a burst of other work on a shared machine moves a round, not the result.
		int Rounds = 7;
		std::vector<int> ConnectionCounts = {1, 16};
		uint16 BasePort = DefaultBenchmarkBasePort;
		// Parts of the case labels to run ("ceiling", "ping", ...); empty runs every case.
		std::vector<std::string> Cases;
	};

	struct FCaseResult
	{
		bool bValid = false;
		std::string Problem;
		int64 Requests = 0;
		double Seconds = 0.0;
		double P50Ms = 0.0;
		double P90Ms = 0.0;
		double P99Ms = 0.0;
		// CPU time of the whole process (server, game thread and load threads) per request.
		double CpuMicrosecondsPerRequest = 0.0;

		double RequestsPerSecond() const { return Seconds > 0.0 ? (double)Requests / Seconds : 0.0; }
	};

	struct FTarget
	{
		std::string Label;
		int Port = 0;
		std::string Body;
	};

	std::string MakePost(int Port, const std::string& Body)
	{
		return "POST /mcp HTTP/1.1\r\nHost: 127.0.0.1:" + std::to_string(Port) + "\r\nContent-Type: application/json\r\nAccept: application/json, text/event-stream\r\nContent-Length: " + std::to_string(Body.size()) + "\r\n\r\n" + Body;
	}

	// One keep-alive client connection on a raw socket.
	class FLoopbackConnection
	{
	public:
		~FLoopbackConnection()
		{
			if (Descriptor >= 0)
			{
				::close(Descriptor);
			}
		}

		bool Connect(int Port)
		{
			Descriptor = ::socket(AF_INET, SOCK_STREAM, 0);
			if (Descriptor < 0)
			{
				return false;
			}
			const int Yes = 1;
			::setsockopt(Descriptor, IPPROTO_TCP, TCP_NODELAY, &Yes, sizeof(Yes));
			timeval Timeout{SocketTimeoutSeconds, 0};
			::setsockopt(Descriptor, SOL_SOCKET, SO_RCVTIMEO, &Timeout, sizeof(Timeout));
			::setsockopt(Descriptor, SOL_SOCKET, SO_SNDTIMEO, &Timeout, sizeof(Timeout));
			sockaddr_in Address{};
			Address.sin_family = AF_INET;
			Address.sin_port = htons((uint16_t)Port);
			Address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
			return ::connect(Descriptor, reinterpret_cast<sockaddr*>(&Address), sizeof(Address)) == 0;
		}

		// Sends one request and reads its whole response; false on any transport failure.
		bool RoundTrip(const std::string& Request, int& OutStatus, std::string& OutBody)
		{
			size_t Sent = 0;
			while (Sent < Request.size())
			{
				const ssize_t Written = ::send(Descriptor, Request.data() + Sent, Request.size() - Sent, MSG_NOSIGNAL);
				if (Written <= 0)
				{
					return false;
				}
				Sent += (size_t)Written;
			}

			Buffer.clear();
			size_t HeaderEnd = std::string::npos;
			size_t ContentLength = 0;
			char Chunk[65536];
			while (true)
			{
				const ssize_t Read = ::recv(Descriptor, Chunk, sizeof(Chunk), 0);
				if (Read <= 0)
				{
					return false;
				}
				Buffer.append(Chunk, (size_t)Read);
				if (HeaderEnd == std::string::npos)
				{
					HeaderEnd = Buffer.find("\r\n\r\n");
					if (HeaderEnd == std::string::npos)
					{
						continue;
					}
					OutStatus = std::atoi(Buffer.c_str() + Buffer.find(' ') + 1);
					ContentLength = FindContentLength(Buffer.substr(0, HeaderEnd + 2));
				}
				if (Buffer.size() >= HeaderEnd + 4 + ContentLength)
				{
					OutBody.assign(Buffer, HeaderEnd + 4, ContentLength);
					return true;
				}
			}
		}

	private:
		static size_t FindContentLength(const std::string& Head)
		{
			const char* Position = ::strcasestr(Head.c_str(), "\r\ncontent-length:");
			return Position ? (size_t)std::strtoull(Position + 17, nullptr, 10) : 0;
		}

		int Descriptor = -1;
		std::string Buffer;
	};

	double ProcessCpuSeconds()
	{
		timespec Time{};
		::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &Time);
		return (double)Time.tv_sec + (double)Time.tv_nsec * 1e-9;
	}

	// Keeps the connections busy for the warm-up and the measured time; the main thread runs
	// game-thread tasks meanwhile, as the editor's game thread would.
	FCaseResult RunCase(const FTarget& Target, int ConnectionCount, const FBenchmarkOptions& Options)
	{
		FCaseResult Result;
		const std::string Request = MakePost(Target.Port, Target.Body);

		std::atomic<bool> bMeasuring{false};
		std::atomic<bool> bStop{false};
		std::atomic<int> Finished{0};
		std::vector<std::vector<double>> Latencies((size_t)ConnectionCount);
		std::vector<std::string> Problems((size_t)ConnectionCount);
		std::vector<std::thread> Threads;
		for (int Index = 0; Index < ConnectionCount; ++Index)
		{
			Threads.emplace_back([&, Index]()
			{
				FLoopbackConnection Connection;
				std::vector<double>& Samples = Latencies[(size_t)Index];
				Samples.reserve(1 << 16);
				if (!Connection.Connect(Target.Port))
				{
					Problems[(size_t)Index] = "cannot connect";
				}
				int Status = 0;
				std::string Body;
				for (int64 Count = 0; Problems[(size_t)Index].empty() && !bStop.load(std::memory_order_relaxed) && Count < MaxRequestsPerConnection; ++Count)
				{
					const double Start = FPlatformTime::Seconds();
					if (!Connection.RoundTrip(Request, Status, Body))
					{
						Problems[(size_t)Index] = "connection failed or timed out";
					}
					else if (Status != 200)
					{
						Problems[(size_t)Index] = "HTTP status " + std::to_string(Status);
					}
					else if (bMeasuring.load(std::memory_order_relaxed))
					{
						Samples.push_back((FPlatformTime::Seconds() - Start) * 1000.0);
					}
				}
				++Finished;
				FGameThreadTaskQueue::Get().Wake();
			});
		}

		FGameThreadTaskQueue& GameThreadTasks = FGameThreadTaskQueue::Get();
		const double WarmupEnd = FPlatformTime::Seconds() + Options.WarmupSeconds;
		const double MeasureEnd = WarmupEnd + Options.Seconds;
		double MeasureStart = 0.0;
		double CpuAtStart = 0.0;
		double CpuUsed = 0.0;
		double LastFrame = FPlatformTime::Seconds();
		while (Finished.load() < ConnectionCount)
		{
			const double Now = FPlatformTime::Seconds();
			if (!bMeasuring && Now >= WarmupEnd)
			{
				bMeasuring = true;
				MeasureStart = Now;
				CpuAtStart = ProcessCpuSeconds();
			}
			if (!bStop && Now >= MeasureEnd)
			{
				bStop = true;
				Result.Seconds = Now - MeasureStart;
				CpuUsed = ProcessCpuSeconds() - CpuAtStart;
			}
			FTSTicker::GetCoreTicker().Tick((float)(Now - LastFrame));
			LastFrame = Now;
			GameThreadTasks.ProcessPendingTasks();
			GameThreadTasks.WaitForTasks(0.01);
		}
		for (std::thread& Thread : Threads)
		{
			Thread.join();
		}
		GameThreadTasks.ProcessPendingTasks();

		for (const std::string& Problem : Problems)
		{
			if (!Problem.empty())
			{
				Result.Problem = Problem;
				return Result;
			}
		}
		std::vector<double> All;
		for (const std::vector<double>& Samples : Latencies)
		{
			All.insert(All.end(), Samples.begin(), Samples.end());
		}
		if (All.empty() || Result.Seconds <= 0.0)
		{
			Result.Problem = "no requests completed";
			return Result;
		}
		std::sort(All.begin(), All.end());
		const auto Percentile = [&All](double Fraction) { return All[std::min(All.size() - 1, (size_t)(Fraction * (double)All.size()))]; };
		Result.bValid = true;
		Result.Requests = (int64)All.size();
		Result.P50Ms = Percentile(0.50);
		Result.P90Ms = Percentile(0.90);
		Result.P99Ms = Percentile(0.99);
		Result.CpuMicrosecondsPerRequest = CpuUsed * 1e6 / (double)Result.Requests;
		return Result;
	}

	// One request outside the measurement, to check the target answers what it should.
	bool ProbeTarget(const FTarget& Target, std::string& OutBody)
	{
		std::atomic<bool> bDone{false};
		bool bOk = false;
		int Status = 0;
		std::thread Client([&]()
		{
			FLoopbackConnection Connection;
			bOk = Connection.Connect(Target.Port) && Connection.RoundTrip(MakePost(Target.Port, Target.Body), Status, OutBody) && Status == 200;
			bDone = true;
			FGameThreadTaskQueue::Get().Wake();
		});
		const double Deadline = FPlatformTime::Seconds() + SocketTimeoutSeconds + 1;
		while (!bDone && FPlatformTime::Seconds() < Deadline)
		{
			FGameThreadTaskQueue::Get().ProcessPendingTasks();
			FGameThreadTaskQueue::Get().WaitForTasks(0.01);
		}
		Client.join();
		return bOk;
	}

	TSharedPtr<FJsonObject> ParseObject(const std::string& Utf8)
	{
		TSharedPtr<FJsonObject> Object;
		FJsonSerializer::Deserialize(TJsonReaderFactory<>::Create(UECompatFromUtf8(Utf8)), Object);
		return Object;
	}

	// Why a target cannot be measured in this build (a tool that is missing answers a JSON-RPC
	// error), or an empty string.
	std::string DescribeUnusableAnswer(const std::string& Body)
	{
		const TSharedPtr<FJsonObject> Envelope = ParseObject(Body);
		if (!Envelope.IsValid())
		{
			return "the answer is not a JSON object";
		}
		const TSharedPtr<FJsonObject>* Error = nullptr;
		if (Envelope->TryGetObjectField(TEXT("error"), Error))
		{
			return "answered " + UECompatToUtf8((*Error)->GetStringField(TEXT("message")));
		}
		const TSharedPtr<FJsonObject>* Result = nullptr;
		bool bIsError = false;
		if (Envelope->TryGetObjectField(TEXT("result"), Result) && (*Result)->TryGetBoolField(TEXT("isError"), bIsError) && bIsError)
		{
			return "the tool reported an error";
		}
		return std::string();
	}

	int CountListedTools(const std::string& Body)
	{
		const TSharedPtr<FJsonObject> Envelope = ParseObject(Body);
		const TSharedPtr<FJsonObject>* Result = nullptr;
		const TArray<TSharedPtr<FJsonValue>>* Tools = nullptr;
		if (Envelope.IsValid() && Envelope->TryGetObjectField(TEXT("result"), Result) && (*Result)->TryGetArrayField(TEXT("tools"), Tools))
		{
			return Tools->Num();
		}
		return -1;
	}

	std::vector<std::string> SplitList(const std::string& List)
	{
		std::vector<std::string> Items;
		for (size_t Start = 0; Start <= List.size();)
		{
			const size_t Comma = std::min(List.find(',', Start), List.size());
			Items.push_back(List.substr(Start, Comma - Start));
			Start = Comma + 1;
		}
		return Items;
	}

	bool ParseOptions(int ArgumentCount, char** Arguments, FBenchmarkOptions& Options)
	{
		for (int Index = 1; Index < ArgumentCount; ++Index)
		{
			const std::string Argument = Arguments[Index];
			const bool bHasValue = Index + 1 < ArgumentCount;
			if (Argument == "--seconds" && bHasValue)
			{
				Options.Seconds = std::atof(Arguments[++Index]);
			}
			else if (Argument == "--warmup" && bHasValue)
			{
				Options.WarmupSeconds = std::atof(Arguments[++Index]);
			}
			else if (Argument == "--base-port" && bHasValue)
			{
				Options.BasePort = (uint16)std::atoi(Arguments[++Index]);
			}
			else if (Argument == "--connections" && bHasValue)
			{
				Options.ConnectionCounts.clear();
				for (const std::string& Item : SplitList(Arguments[++Index]))
				{
					Options.ConnectionCounts.push_back(std::atoi(Item.c_str()));
				}
			}
			else if (Argument == "--rounds" && bHasValue)
			{
				Options.Rounds = std::atoi(Arguments[++Index]);
			}
			else if (Argument == "--cases" && bHasValue)
			{
				Options.Cases = SplitList(Arguments[++Index]);
			}
			else
			{
				return false;
			}
		}
		// Bounded: at most a minute per case, 25 rounds and 64 connections (the listeners' thread pools).
		const bool bConnectionsValid = !Options.ConnectionCounts.empty() && std::all_of(Options.ConnectionCounts.begin(), Options.ConnectionCounts.end(), [](int Count) { return Count >= 1 && Count <= 64; });
		return Options.Seconds > 0.0 && Options.Seconds <= 60.0 && Options.Rounds >= 1 && Options.Rounds <= 25 && Options.WarmupSeconds >= 0.0 && Options.WarmupSeconds <= 10.0 && bConnectionsValid && Options.BasePort != 0;
	}

	double Median(std::vector<double> Values)
	{
		std::sort(Values.begin(), Values.end());
		return Values.empty() ? 0.0 : Values[Values.size() / 2];
	}

	// One case over all rounds: the round with the median throughput, the lowest and highest
	// throughput, and the median of its throughput over the ceiling's in the same round.
	struct FCaseSummary
	{
		FCaseResult MedianRound;
		double Lowest = 0.0;
		double Highest = 0.0;
		double RatioToCeiling = 0.0;
	};

	FCaseSummary Summarize(const std::vector<FCaseResult>& Rounds, const std::vector<FCaseResult>& CeilingRounds)
	{
		FCaseSummary Summary;
		std::vector<FCaseResult> Sorted = Rounds;
		for (const FCaseResult& Round : Sorted)
		{
			if (!Round.bValid)
			{
				Summary.MedianRound = Round;
				return Summary;
			}
		}
		std::vector<double> Ratios;
		for (size_t Round = 0; Round < Rounds.size() && Round < CeilingRounds.size(); ++Round)
		{
			if (CeilingRounds[Round].bValid && CeilingRounds[Round].RequestsPerSecond() > 0.0)
			{
				Ratios.push_back(Rounds[Round].RequestsPerSecond() / CeilingRounds[Round].RequestsPerSecond());
			}
		}
		std::sort(Sorted.begin(), Sorted.end(), [](const FCaseResult& A, const FCaseResult& B) { return A.RequestsPerSecond() < B.RequestsPerSecond(); });
		Summary.MedianRound = Sorted[Sorted.size() / 2];
		Summary.Lowest = Sorted.front().RequestsPerSecond();
		Summary.Highest = Sorted.back().RequestsPerSecond();
		Summary.RatioToCeiling = Median(Ratios);
		return Summary;
	}

	void PrintRow(const std::string& Label, int Connections, const FCaseSummary& Summary, bool bShowRatio)
	{
		const FCaseResult& Result = Summary.MedianRound;
		if (!Result.bValid)
		{
			std::printf("%-36s %5d   not measured: %s\n", Label.c_str(), Connections, Result.Problem.c_str());
			return;
		}
		char Ratio[32] = "";
		if (bShowRatio && Summary.RatioToCeiling > 0.0)
		{
			std::snprintf(Ratio, sizeof(Ratio), "%5.1f%%", 100.0 * Summary.RatioToCeiling);
		}
		char Range[48];
		std::snprintf(Range, sizeof(Range), "%.0f-%.0f", Summary.Lowest, Summary.Highest);
		std::printf("%-36s %5d %10.0f %15s %9.3f %9.3f %9.3f %9.1f   %s\n", Label.c_str(), Connections, Result.RequestsPerSecond(), Range, Result.P50Ms, Result.P90Ms, Result.P99Ms, Result.CpuMicrosecondsPerRequest, Ratio);
	}
}

int main(int ArgumentCount, char** Arguments)
{
	FBenchmarkOptions Options;
	if (!ParseOptions(ArgumentCount, Arguments, Options))
	{
		std::fprintf(stderr, "Usage: EndpointBenchmark [--seconds 0-60] [--warmup 0-10] [--rounds 1-25] [--connections 1,16 (each 1-64)] [--cases ceiling,ping,tools/list,capabilities] [--base-port P]\n");
		return 2;
	}
	std::signal(SIGPIPE, SIG_IGN);

	// The endpoint as the editor runs it: its HTTP listener threads hand every request to this
	// (the game) thread.
	TSharedPtr<FZorvekMCPBridgeServer, ESPMode::ThreadSafe> Server = MakeShared<FZorvekMCPBridgeServer, ESPMode::ThreadSafe>();
	if (!Server->Start(Options.BasePort))
	{
		std::fprintf(stderr, "The endpoint could not bind a port from %d.\n", (int)Options.BasePort);
		return 1;
	}
	const int EndpointPort = Server->GetPort();

	// The ceiling: the same HTTP library with the listeners' keep-alive and TCP_NODELAY, answering
	// the bytes of a ping answer at once on its own thread. A fixed pool of 64 threads serves the
	// benchmark's at most 64 connections as the listeners' growing one does.
	const std::string FixedBody = "{\r\n\t\"jsonrpc\": \"2.0\",\r\n\t\"id\": 1,\r\n\t\"result\":\r\n\t{\r\n\t}\r\n}";
	httplib::Server Ceiling;
	Ceiling.set_tcp_nodelay(true);
	Ceiling.new_task_queue = []() { return new httplib::ThreadPool(64); };
	Ceiling.set_keep_alive_max_count(1000000);
	Ceiling.set_keep_alive_timeout(15);
	Ceiling.set_read_timeout(5, 0);
	Ceiling.set_write_timeout(5, 0);
	Ceiling.Post("/mcp", [&FixedBody](const httplib::Request&, httplib::Response& Response)
	{
		Response.set_content(FixedBody, "application/json; charset=utf-8");
	});
	const int CeilingPort = Ceiling.bind_to_any_port("127.0.0.1");
	if (CeilingPort <= 0)
	{
		std::fprintf(stderr, "The ceiling server could not bind a port.\n");
		Server->Stop();
		return 1;
	}
	std::thread CeilingThread([&Ceiling]() { Ceiling.listen_after_bind(); });

	const std::vector<FTarget> Targets = {
		{"ceiling: bare cpp-httplib, fixed body", CeilingPort, R"({"jsonrpc":"2.0","id":1,"method":"ping"})"},
		{"ping", EndpointPort, R"({"jsonrpc":"2.0","id":1,"method":"ping"})"},
		{"tools/list", EndpointPort, R"({"jsonrpc":"2.0","id":2,"method":"tools/list"})"},
		{"tools/call unreal_get_capabilities", EndpointPort, R"({"jsonrpc":"2.0","id":3,"method":"tools/call","params":{"name":"unreal_get_capabilities","arguments":{}}})"},
	};

	std::printf("Endpoint benchmark on loopback: %.1f s per case after %.1f s warm-up, %u hardware threads\n", Options.Seconds, Options.WarmupSeconds, std::thread::hardware_concurrency());
	std::printf("Endpoint %s, ceiling http://127.0.0.1:%d/mcp\n", UECompatToUtf8(Server->GetEndpointUrl()).c_str(), CeilingPort);

	// Every target is probed once first: a tool this build lacks is reported, not measured.
	std::vector<std::string> Notes;
	std::vector<bool> bSelected;
	std::vector<std::string> Problems;
	for (const FTarget& Target : Targets)
	{
		bSelected.push_back(Options.Cases.empty() || std::any_of(Options.Cases.begin(), Options.Cases.end(), [&Target](const std::string& Case) { return Target.Label.find(Case) != std::string::npos; }));
		std::string Body;
		const std::string Problem = !bSelected.back() ? std::string() : ProbeTarget(Target, Body) ? DescribeUnusableAnswer(Body) : std::string("no HTTP 200 answer");
		Problems.push_back(Problem);
		if (!bSelected.back() || &Target == &Targets[0])
		{
			continue;
		}
		if (!Problem.empty())
		{
			Notes.push_back(Target.Label + ": " + Problem);
		}
		else if (Target.Body.find("tools/list") != std::string::npos)
		{
			Notes.push_back(Target.Label + ": " + std::to_string(CountListedTools(Body)) + " tools, " + std::to_string(Body.size()) + " bytes");
		}
		else
		{
			Notes.push_back(Target.Label + ": " + std::to_string(Body.size()) + " bytes");
		}
	}
	for (const std::string& Note : Notes)
	{
		std::printf("  %s\n", Note.c_str());
	}

	std::printf("\n%-36s %5s %10s %15s %9s %9s %9s %9s   %s\n", "case", "conns", "req/s", "rounds' req/s", "p50 ms", "p90 ms", "p99 ms", "CPU us", "of ceiling");
	for (const int Connections : Options.ConnectionCounts)
	{
		// Rounds interleave the cases, so slow and busy moments of the machine hit all of them.
		std::vector<std::vector<FCaseResult>> Rounds(Targets.size());
		for (int Round = 0; Round < Options.Rounds; ++Round)
		{
			for (size_t Index = 0; Index < Targets.size(); ++Index)
			{
				if (bSelected[Index] && Problems[Index].empty())
				{
					Rounds[Index].push_back(RunCase(Targets[Index], Connections, Options));
				}
			}
		}
		for (size_t Index = 0; Index < Targets.size(); ++Index)
		{
			if (!bSelected[Index])
			{
				continue;
			}
			FCaseSummary Summary;
			Summary.MedianRound.Problem = Problems[Index];
			if (Problems[Index].empty())
			{
				Summary = Summarize(Rounds[Index], Rounds[0]);
			}
			PrintRow(Targets[Index].Label, Connections, Summary, Index != 0);
		}
		std::fflush(stdout);
	}

	Ceiling.stop();
	CeilingThread.join();
	Server->Stop();
	FHttpServerModule::Get().ShutdownModule();
	return 0;
}
