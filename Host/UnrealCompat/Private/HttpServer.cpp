#include "HttpServerModule.h"
#include "Containers/StringConv.h"
#include "Logging/LogMacros.h"

#include <httplib.h>

#include <condition_variable>
#include <cstdlib>
#include <deque>
#include <dirent.h>
#include <functional>
#include <netinet/in.h>
#include <optional>
#include <set>
#include <sys/socket.h>
#include <system_error>
#include <thread>
#include <vector>

// ---------------------------------------------------------------------------------------------
// Responses

TUniquePtr<FHttpServerResponse> FHttpServerResponse::Create(const FString& Text, const FString& ContentType)
{
	const FTCHARToUTF8 Utf8(*Text, Text.Len());
	TArray<uint8> Bytes(reinterpret_cast<const uint8*>(Utf8.Get()), Utf8.Length());
	TUniquePtr<FHttpServerResponse> Response = MakeUnique<FHttpServerResponse>(MoveTemp(Bytes));
	Response->Code = EHttpServerResponseCodes::Ok;
	Response->Headers.Add(TEXT("content-type"), TArray<FString>{ContentType + TEXT(";charset=utf-8")});
	return Response;
}

TUniquePtr<FHttpServerResponse> FHttpServerResponse::Create(TArray<uint8>&& RawBytes, FString ContentType)
{
	TUniquePtr<FHttpServerResponse> Response = MakeUnique<FHttpServerResponse>(MoveTemp(RawBytes));
	Response->Code = EHttpServerResponseCodes::Ok;
	Response->Headers.Add(TEXT("content-type"), TArray<FString>{ContentType});
	return Response;
}

TUniquePtr<FHttpServerResponse> FHttpServerResponse::Ok()
{
	TUniquePtr<FHttpServerResponse> Response = MakeUnique<FHttpServerResponse>();
	Response->Code = EHttpServerResponseCodes::NoContent;
	return Response;
}

TUniquePtr<FHttpServerResponse> FHttpServerResponse::Error(EHttpServerResponseCodes ResponseCode, const FString& ErrorCode, const FString& ErrorMessage)
{
	// Built with Printf and C-style escaping, exactly as the engine does (so it is not always
	// valid JSON).
	const FString Body = FString::Printf(TEXT("{\"errorCode\": \"%s\", \"errorMessage\": \"%s\"}"), *ErrorCode.ReplaceCharWithEscapedChar(), *ErrorMessage.ReplaceCharWithEscapedChar());
	TUniquePtr<FHttpServerResponse> Response = Create(Body, TEXT("application/json"));
	Response->Code = ResponseCode;
	return Response;
}

// ---------------------------------------------------------------------------------------------
// Router

namespace
{
	class FCompatHttpRouter : public IHttpRouter
	{
	public:
		FHttpRouteHandle BindRoute(const FHttpPath& HttpPath, const EHttpServerRequestVerbs& HttpVerbs, const FHttpRequestHandler& Handler) override
		{
			check(HttpPath.IsValidPath());
			check(HttpVerbs != EHttpServerRequestVerbs::VERB_NONE);
			std::lock_guard<std::mutex> Lock(Mutex);
			for (const FHttpRouteHandle& Existing : Routes)
			{
				if (Existing->Path == HttpPath.GetPath() && EnumHasAnyFlags(Existing->Verbs, HttpVerbs))
				{
					return FHttpRouteHandle();
				}
			}
			FHttpRouteHandle Handle = MakeShared<const FHttpRouteHandleInternal>(HttpPath.GetPath(), HttpVerbs, Handler);
			Routes.Add(Handle);
			return Handle;
		}

		void UnbindRoute(const FHttpRouteHandle& RouteHandle) override
		{
			std::lock_guard<std::mutex> Lock(Mutex);
			ensure(Routes.Remove(RouteHandle) > 0);
		}

		FDelegateHandle RegisterRequestPreprocessor(FHttpRequestHandler RequestPreprocessor) override
		{
			std::lock_guard<std::mutex> Lock(Mutex);
			FDelegateHandle Handle(FDelegateHandle::GenerateNewHandle);
			Preprocessors.Add(FPreprocessor{Handle, MoveTemp(RequestPreprocessor)});
			return Handle;
		}

		void UnregisterRequestPreprocessor(const FDelegateHandle& RequestPreprocessorHandle) override
		{
			std::lock_guard<std::mutex> Lock(Mutex);
			Preprocessors.RemoveAll([&RequestPreprocessorHandle](const FPreprocessor& Entry) { return Entry.Handle == RequestPreprocessorHandle; });
		}

		bool Query(const TSharedPtr<FHttpServerRequest>& Request, const FHttpResultCallback& OnProcessingComplete) override
		{
			return Request.IsValid() && Route(*Request, OnProcessingComplete);
		}

		// Preprocessors first, then the exact path, then ever shorter prefixes; a route matches
		// only for its verbs. Paths compare case-insensitively, as the engine's route map does.
		bool Route(FHttpServerRequest& Request, const FHttpResultCallback& OnComplete)
		{
			TArray<FPreprocessor> PreprocessorSnapshot;
			TArray<FHttpRouteHandle> RouteSnapshot;
			{
				std::lock_guard<std::mutex> Lock(Mutex);
				PreprocessorSnapshot = Preprocessors;
				RouteSnapshot = Routes;
			}
			for (const FPreprocessor& Entry : PreprocessorSnapshot)
			{
				if (Entry.Handler.IsBound() && Entry.Handler.Execute(Request, OnComplete))
				{
					return true;
				}
			}
			const FString FullPath = Request.RelativePath.GetPath();
			FString Candidate = FullPath;
			while (!Candidate.IsEmpty())
			{
				for (const FHttpRouteHandle& Handle : RouteSnapshot)
				{
					if (Handle->Path == Candidate && EnumHasAnyFlags(Handle->Verbs, Request.Verb) && Handle->Handler.IsBound())
					{
						// The handler sees the path relative to its route; the request is not copied.
						const FString Remainder = FullPath.RightChop(Candidate.Len());
						Request.RelativePath = FHttpPath(Remainder.IsEmpty() ? FString(TEXT("/")) : Remainder);
						if (Handle->Handler.Execute(Request, OnComplete))
						{
							return true;
						}
						Request.RelativePath = FHttpPath(FullPath);
					}
				}
				int32 Slash = INDEX_NONE;
				if (!Candidate.FindLastChar(u'/', Slash) || Slash == 0)
				{
					break;
				}
				Candidate = Candidate.Left(Slash);
			}
			return false;
		}

	private:
		struct FPreprocessor
		{
			FDelegateHandle Handle;
			FHttpRequestHandler Handler;
		};
		std::mutex Mutex;
		TArray<FHttpRouteHandle> Routes;
		TArray<FPreprocessor> Preprocessors;
	};

	// A response that a listener thread waits for; the module cancels every waiting one when it
	// shuts down, so no thread waits for a game thread that has stopped.
	struct FPendingResponse
	{
		std::mutex Mutex;
		std::condition_variable Ready;
		TUniquePtr<FHttpServerResponse> Response;
		bool bDone = false;

		void Complete(TUniquePtr<FHttpServerResponse>&& InResponse)
		{
			{
				std::lock_guard<std::mutex> Lock(Mutex);
				if (bDone)
				{
					return;
				}
				Response = MoveTemp(InResponse);
				bDone = true;
			}
			Ready.notify_all();
		}
	};

	EHttpServerRequestVerbs ParseVerb(const std::string& Method)
	{
		const FString Upper = UECompatFromUtf8(Method).ToUpper();
		if (Upper == TEXT("GET")) return EHttpServerRequestVerbs::VERB_GET;
		if (Upper == TEXT("POST")) return EHttpServerRequestVerbs::VERB_POST;
		if (Upper == TEXT("PUT")) return EHttpServerRequestVerbs::VERB_PUT;
		if (Upper == TEXT("DELETE")) return EHttpServerRequestVerbs::VERB_DELETE;
		if (Upper == TEXT("PATCH")) return EHttpServerRequestVerbs::VERB_PATCH;
		if (Upper == TEXT("OPTIONS")) return EHttpServerRequestVerbs::VERB_OPTIONS;
		return EHttpServerRequestVerbs::VERB_NONE;
	}

	void WriteResponse(const FHttpServerResponse& Response, httplib::Response& Out)
	{
		Out.status = (int)Response.Code;
		for (const auto& Header : Response.Headers)
		{
			for (const FString& Value : Header.Value)
			{
				Out.set_header(UECompatToUtf8(Header.Key), UECompatToUtf8(Value));
			}
		}
		Out.body.assign(reinterpret_cast<const char*>(Response.Body.GetData()), (size_t)Response.Body.Num());
	}

	void WriteError(EHttpServerResponseCodes Code, const TCHAR* ErrorCode, httplib::Response& Out)
	{
		WriteResponse(*FHttpServerResponse::Error(Code, ErrorCode), Out);
	}

	// Runs each accepted connection on a worker. cpp-httplib keeps a connection on one worker
	// for its whole life, keep-alive waits included, so with a fixed pool of N workers the
	// client after N idle keep-alive connections waits until one of them times out (15 s). The
	// engine's server polls every connection from one loop and never does that, so workers are
	// added whenever no idle one is left. Idle workers are reused and stay until the listener
	// stops, so the pool is as large as the most connections open at once, and stops growing at
	// MaxWorkers (the default descriptor limit of a process allows about as many connections).
	class FConnectionWorkers final : public httplib::TaskQueue
	{
	public:
		static constexpr size_t MaxWorkers = 1024;

		void enqueue(std::function<void()> Task) override
		{
			std::lock_guard<std::mutex> Lock(Mutex);
			Tasks.push_back(std::move(Task));
			// A worker woken for an earlier task may not have taken it yet, so compare with all
			// waiting tasks, not just this one.
			if (IdleWorkers < Tasks.size() && Workers.size() < MaxWorkers)
			{
				try
				{
					Workers.emplace_back([this]() { Work(); });
					return;
				}
				catch (const std::system_error&)
				{
					// No thread to be had: the task waits for a worker to become free.
				}
			}
			Wake.notify_one();
		}

		// Called once the accept loop has ended: the workers finish the queued connections and
		// their open ones, then end.
		void shutdown() override
		{
			std::vector<std::thread> Finishing;
			{
				std::lock_guard<std::mutex> Lock(Mutex);
				bShuttingDown = true;
				Finishing.swap(Workers);
			}
			Wake.notify_all();
			for (std::thread& Worker : Finishing)
			{
				Worker.join();
			}
		}

	private:
		void Work()
		{
			std::unique_lock<std::mutex> Lock(Mutex);
			for (;;)
			{
				++IdleWorkers;
				Wake.wait(Lock, [this]() { return bShuttingDown || !Tasks.empty(); });
				--IdleWorkers;
				if (Tasks.empty())
				{
					return;
				}
				std::function<void()> Task = std::move(Tasks.front());
				Tasks.pop_front();
				Lock.unlock();
				Task();
				Lock.lock();
			}
		}

		std::mutex Mutex;
		std::condition_variable Wake;
		std::deque<std::function<void()>> Tasks;
		std::vector<std::thread> Workers;
		size_t IdleWorkers = 0;
		bool bShuttingDown = false;
	};

	// cpp-httplib 0.11 lets a stopped server's worker wait out the whole keep-alive timeout
	// (15 s) of an idle client connection before it returns, and it gives no access to the
	// connection sockets. So at shut-down the connections accepted on our ports are found among
	// the process's descriptors (a connected socket whose local port is one of ours) and shut
	// down, which ends those waits at once instead of keeping the process alive for 15 s.
	void ShutDownAcceptedConnections(const std::set<uint32>& Ports)
	{
		DIR* Descriptors = ::opendir("/proc/self/fd");
		if (!Descriptors)
		{
			return;
		}
		while (const dirent* Entry = ::readdir(Descriptors))
		{
			char* End = nullptr;
			const long Descriptor = std::strtol(Entry->d_name, &End, 10);
			if (End == Entry->d_name || *End != '\0' || Descriptor == ::dirfd(Descriptors))
			{
				continue;
			}
			sockaddr_in Local{};
			socklen_t Length = sizeof(Local);
			if (::getsockname((int)Descriptor, reinterpret_cast<sockaddr*>(&Local), &Length) != 0 || Local.sin_family != AF_INET || Ports.count(ntohs(Local.sin_port)) == 0)
			{
				continue;
			}
			sockaddr_in Peer{};
			Length = sizeof(Peer);
			// The listening socket has no peer; only accepted connections do.
			if (::getpeername((int)Descriptor, reinterpret_cast<sockaddr*>(&Peer), &Length) == 0)
			{
				::shutdown((int)Descriptor, SHUT_RDWR);
			}
		}
		::closedir(Descriptors);
	}
}

// ---------------------------------------------------------------------------------------------
// Listener

struct FHttpServerModule::FListener
{
	uint32 Port = 0;
	TSharedPtr<FCompatHttpRouter> Router = MakeShared<FCompatHttpRouter>();
	std::unique_ptr<httplib::Server> Server;
	std::thread Thread;
	bool bListening = false;

	std::mutex PendingMutex;
	std::set<std::shared_ptr<FPendingResponse>> Pending;

	bool Start()
	{
		if (bListening)
		{
			return true;
		}
		Server = std::make_unique<httplib::Server>();
		// No SO_REUSEPORT, so a port held by another process is refused, as with the engine's
		// default ReuseAddressAndPort=false.
		Server->set_socket_options([](socket_t Socket)
		{
			int Yes = 1;
			::setsockopt(Socket, SOL_SOCKET, SO_REUSEADDR, &Yes, sizeof(Yes));
		});
		// The library writes a response's head and body separately; without TCP_NODELAY (which
		// accepted connections inherit from the listening socket) the body waits for the client's
		// delayed ACK, about 40 ms per request.
		Server->set_tcp_nodelay(true);
		Server->new_task_queue = []() { return new FConnectionWorkers(); };
		Server->set_keep_alive_max_count(1000000);
		Server->set_keep_alive_timeout(15);
		Server->set_read_timeout(5, 0);
		Server->set_write_timeout(5, 0);
		// The engine frames bodies by Content-Length only: POST and PUT without it are refused
		// before any body is read.
		Server->set_pre_routing_handler([](const httplib::Request& Request, httplib::Response& Response)
		{
			if ((Request.method == "POST" || Request.method == "PUT") && !Request.has_header("Content-Length"))
			{
				WriteError(EHttpServerResponseCodes::LengthRequired, TEXT("errors.com.epicgames.httpserver.missing_content_length"), Response);
				return httplib::Server::HandlerResponse::Handled;
			}
			return httplib::Server::HandlerResponse::Unhandled;
		});
		const auto Handler = [this](const httplib::Request& Request, httplib::Response& Response) { Serve(Request, Response); };
		Server->Get(".*", Handler);
		Server->Post(".*", Handler);
		Server->Put(".*", Handler);
		Server->Delete(".*", Handler);
		Server->Patch(".*", Handler);
		Server->Options(".*", Handler);
		if (!Server->bind_to_port("127.0.0.1", (int)Port))
		{
			UE_LOG(LogHttpListener, Error, TEXT("HttpListener unable to bind to 127.0.0.1:%u"), Port);
			Server.reset();
			return false;
		}
		httplib::Server* Raw = Server.get();
		Thread = std::thread([Raw]() { Raw->listen_after_bind(); });
		// A stop before the accept loop runs would be lost, so wait until it does.
		for (int32 Attempt = 0; Attempt < 40000 && !Raw->is_running(); ++Attempt)
		{
			std::this_thread::sleep_for(std::chrono::microseconds(50));
		}
		bListening = true;
		UE_LOG(LogHttpListener, Log, TEXT("Created new HttpListener on 127.0.0.1:%u"), Port);
		return true;
	}

	// Closes the listening socket at once; connections still being answered finish on their
	// own, so the caller (the game thread) never waits for a request that waits for it.
	std::thread StopAndDetachThread()
	{
		if (!bListening)
		{
			return std::thread();
		}
		Server->stop();
		bListening = false;
		UE_LOG(LogHttpListener, Log, TEXT("HttpListener stopped listening on 127.0.0.1:%u"), Port);
		return MoveTemp(Thread);
	}

	void CancelPending()
	{
		std::lock_guard<std::mutex> Lock(PendingMutex);
		for (const std::shared_ptr<FPendingResponse>& Entry : Pending)
		{
			Entry->Complete(FHttpServerResponse::Error(EHttpServerResponseCodes::ServiceUnavail, TEXT("errors.com.epicgames.httpserver.shutting_down")));
		}
	}

	void Serve(const httplib::Request& In, httplib::Response& Out)
	{
		FHttpServerRequest Request;
		Request.Verb = ParseVerb(In.method);
		if (Request.Verb == EHttpServerRequestVerbs::VERB_NONE)
		{
			WriteError(EHttpServerResponseCodes::BadMethod, TEXT("errors.com.epicgames.httpserver.unknown_request_verb"), Out);
			return;
		}
		Request.HttpVersion = In.version == "HTTP/1.0" ? HttpVersion::EHttpServerHttpVersion::HTTP_VERSION_1_0 : HttpVersion::EHttpServerHttpVersion::HTTP_VERSION_1_1;
		if (Request.Verb == EHttpServerRequestVerbs::VERB_GET && !In.body.empty())
		{
			WriteError(EHttpServerResponseCodes::BadRequest, TEXT("errors.com.epicgames.httpserver.invalid_content_length"), Out);
			return;
		}
		for (const auto& Header : In.headers)
		{
			// Names lower-cased and trimmed; values split on ',' without re-trimming.
			const FString Name = UECompatFromUtf8(Header.first).TrimStartAndEnd().ToLower();
			TArray<FString> Pieces;
			UECompatFromUtf8(Header.second).ParseIntoArray(Pieces, TEXT(","), false);
			TArray<FString>& Values = Request.Headers.FindOrAdd(Name);
			Values.Append(Pieces);
		}
		for (const auto& Param : In.params)
		{
			Request.QueryParams.Add(UECompatFromUtf8(Param.first), UECompatFromUtf8(Param.second));
		}
		Request.RelativePath = FHttpPath(UECompatFromUtf8(In.path));
		Request.Body = TArray<uint8>(reinterpret_cast<const uint8*>(In.body.data()), (int32)In.body.size());

		std::shared_ptr<FPendingResponse> Waiter = std::make_shared<FPendingResponse>();
		{
			std::lock_guard<std::mutex> Lock(PendingMutex);
			Pending.insert(Waiter);
		}
		const FHttpResultCallback OnComplete = [Waiter](TUniquePtr<FHttpServerResponse>&& Response) { Waiter->Complete(MoveTemp(Response)); };
		if (!Router->Route(Request, OnComplete))
		{
			Waiter->Complete(FHttpServerResponse::Error(EHttpServerResponseCodes::NotFound, TEXT("errors.com.epicgames.httpserver.route_handler_not_found")));
		}
		{
			std::unique_lock<std::mutex> Lock(Waiter->Mutex);
			Waiter->Ready.wait(Lock, [&Waiter]() { return Waiter->bDone; });
		}
		{
			std::lock_guard<std::mutex> Lock(PendingMutex);
			Pending.erase(Waiter);
		}
		if (Waiter->Response)
		{
			WriteResponse(*Waiter->Response, Out);
		}
		else
		{
			WriteError(EHttpServerResponseCodes::ServerError, TEXT("errors.com.epicgames.httpserver.null_response"), Out);
		}
	}
};

// ---------------------------------------------------------------------------------------------
// Module

namespace
{
	std::atomic<FHttpServerModule*> GHttpServerModule{nullptr};
}

bool FHttpServerModule::IsAvailable()
{
	return GHttpServerModule.load() != nullptr;
}

FHttpServerModule& FHttpServerModule::Get()
{
	static FHttpServerModule Instance;
	GHttpServerModule = &Instance;
	return Instance;
}

TSharedPtr<IHttpRouter> FHttpServerModule::GetHttpRouter(uint32 Port, bool bFailOnBindFailure)
{
	check(Port > 0);
	std::lock_guard<std::recursive_mutex> Lock(Mutex);
	TSharedPtr<FListener> Listener = Listeners.FindRef(Port);
	const bool bCreated = !Listener.IsValid();
	if (bCreated)
	{
		Listener = MakeShared<FListener>();
		Listener->Port = Port;
	}
	if (bListenersEnabled && !Listener->Start() && bFailOnBindFailure)
	{
		if (!bCreated)
		{
			Listeners.Remove(Port);
		}
		return nullptr;
	}
	if (bCreated)
	{
		Listeners.Add(Port, Listener);
	}
	return Listener->Router;
}

void FHttpServerModule::StartAllListeners()
{
	std::lock_guard<std::recursive_mutex> Lock(Mutex);
	bListenersEnabled = true;
	for (const auto& Pair : Listeners)
	{
		Pair.Value->Start();
	}
}

void FHttpServerModule::StopAllListeners()
{
	std::lock_guard<std::recursive_mutex> Lock(Mutex);
	bListenersEnabled = false;
	for (const auto& Pair : Listeners)
	{
		std::thread Finishing = Pair.Value->StopAndDetachThread();
		if (Finishing.joinable())
		{
			// Keep the old server alive until its last connection ends.
			TSharedPtr<FListener> Retired = MakeShared<FListener>();
			Retired->Port = Pair.Value->Port;
			Retired->Server = MoveTemp(Pair.Value->Server);
			Retired->Thread = MoveTemp(Finishing);
			RetiredListeners.Add(Retired);
		}
	}
}

bool FHttpServerModule::HasPendingListeners() const
{
	std::lock_guard<std::recursive_mutex> Lock(Mutex);
	for (const auto& Pair : Listeners)
	{
		if (!Pair.Value->bListening)
		{
			return true;
		}
	}
	return false;
}

void FHttpServerModule::ShutdownModule()
{
	StopAllListeners();
	TArray<TSharedPtr<FListener>> ToJoin;
	std::set<uint32> Ports;
	{
		std::lock_guard<std::recursive_mutex> Lock(Mutex);
		for (const auto& Pair : Listeners)
		{
			Pair.Value->CancelPending();
			Ports.insert(Pair.Key);
		}
		ToJoin = MoveTemp(RetiredListeners);
		RetiredListeners.Reset();
	}
	for (const TSharedPtr<FListener>& Listener : ToJoin)
	{
		Ports.insert(Listener->Port);
	}
	ShutDownAcceptedConnections(Ports);
	for (const TSharedPtr<FListener>& Listener : ToJoin)
	{
		if (Listener->Thread.joinable())
		{
			Listener->Thread.join();
		}
	}
}

FHttpServerModule::~FHttpServerModule()
{
	ShutdownModule();
	GHttpServerModule = nullptr;
}
