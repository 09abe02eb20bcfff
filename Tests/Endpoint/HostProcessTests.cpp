// zorvek-bridge-host as a user runs it: options, the engine configuration file, console
// commands on standard input, the output-log format, and clean exits.
#include "ZorvekTestSupport.h"

#include <chrono>
#include <csignal>
#include <cstdio>
#include <fcntl.h>
#include <fstream>
#include <poll.h>
#include <regex>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace
{
	// A running host with pipes on its standard input and output.
	class FHostProcess
	{
	public:
		explicit FHostProcess(const std::vector<std::string>& Arguments)
		{
			int Input[2];
			int Output[2];
			if (::pipe(Input) != 0 || ::pipe(Output) != 0)
			{
				return;
			}
			ProcessId = ::fork();
			if (ProcessId == 0)
			{
				::dup2(Input[0], STDIN_FILENO);
				::dup2(Output[1], STDOUT_FILENO);
				::dup2(Output[1], STDERR_FILENO);
				::close(Input[1]);
				::close(Output[0]);
				std::vector<char*> Argv;
				std::string Program = ZORVEK_BRIDGE_HOST_PATH;
				Argv.push_back(Program.data());
				std::vector<std::string> Copies = Arguments;
				for (std::string& Argument : Copies)
				{
					Argv.push_back(Argument.data());
				}
				Argv.push_back(nullptr);
				::execv(Program.c_str(), Argv.data());
				::_exit(127);
			}
			::close(Input[0]);
			::close(Output[1]);
			InputWrite = Input[1];
			OutputRead = Output[0];
			::fcntl(OutputRead, F_SETFL, O_NONBLOCK);
		}

		~FHostProcess()
		{
			if (ProcessId > 0 && !bExited)
			{
				::kill(ProcessId, SIGKILL);
				::waitpid(ProcessId, nullptr, 0);
			}
			CloseInput();
			if (OutputRead >= 0)
			{
				::close(OutputRead);
			}
		}

		void Send(const std::string& Line)
		{
			const std::string Text = Line + "\n";
			EXPECT_EQ(::write(InputWrite, Text.data(), Text.size()), (ssize_t)Text.size());
		}

		void CloseInput()
		{
			if (InputWrite >= 0)
			{
				::close(InputWrite);
				InputWrite = -1;
			}
		}

		// Reads output until it contains the text or the time is up.
		bool WaitForOutput(const std::string& Text, double TimeoutSeconds = 10.0)
		{
			const auto Deadline = std::chrono::steady_clock::now() + std::chrono::duration<double>(TimeoutSeconds);
			while (Output.find(Text) == std::string::npos)
			{
				if (std::chrono::steady_clock::now() > Deadline || !ReadSome(50))
				{
					if (std::chrono::steady_clock::now() > Deadline)
					{
						return false;
					}
				}
			}
			return true;
		}

		// Waits for the exit and returns the exit code, or -1 on a time-out or a signal.
		int WaitForExit(double TimeoutSeconds = 10.0)
		{
			const auto Deadline = std::chrono::steady_clock::now() + std::chrono::duration<double>(TimeoutSeconds);
			while (std::chrono::steady_clock::now() < Deadline)
			{
				ReadSome(20);
				int Status = 0;
				if (::waitpid(ProcessId, &Status, WNOHANG) == ProcessId)
				{
					bExited = true;
					while (ReadSome(0))
					{
					}
					return WIFEXITED(Status) ? WEXITSTATUS(Status) : -1;
				}
			}
			return -1;
		}

		void Signal(int Number) { ::kill(ProcessId, Number); }
		const std::string& GetOutput() const { return Output; }

	private:
		bool ReadSome(int TimeoutMilliseconds)
		{
			pollfd Poll{OutputRead, POLLIN, 0};
			if (::poll(&Poll, 1, TimeoutMilliseconds) <= 0)
			{
				return false;
			}
			char Buffer[4096];
			const ssize_t Read = ::read(OutputRead, Buffer, sizeof(Buffer));
			if (Read > 0)
			{
				Output.append(Buffer, (size_t)Read);
				return true;
			}
			return false;
		}

		pid_t ProcessId = -1;
		int InputWrite = -1;
		int OutputRead = -1;
		bool bExited = false;
		std::string Output;
	};

	std::string WriteTemporaryFile(const std::string& Name, const std::string& Content)
	{
		const std::string Path = ::testing::TempDir() + Name;
		std::ofstream(Path) << Content;
		return Path;
	}
}

TEST(HostProcess, HelpAndBadOptions)
{
	FHostProcess Help({"--help"});
	EXPECT_EQ(Help.WaitForExit(), 0);
	EXPECT_NE(Help.GetOutput().find("Usage: zorvek-bridge-host"), std::string::npos);

	FHostProcess Bad({"--no-such-option"});
	EXPECT_EQ(Bad.WaitForExit(), 2);
	EXPECT_NE(Bad.GetOutput().find("Unknown or incomplete option: --no-such-option"), std::string::npos);

	const std::string Malformed = WriteTemporaryFile("ZorvekMalformed.ini", "bAutoStart=False\n");
	FHostProcess BadIni({"--engine-ini", Malformed});
	EXPECT_EQ(BadIni.WaitForExit(), 2);
	EXPECT_NE(BadIni.GetOutput().find("is not an ini file"), std::string::npos);
}

TEST(HostProcess, ConsoleCommandsDriveTheBridgeAndEndOfInputShutsItDown)
{
	const std::string Ini = WriteTemporaryFile("ZorvekNoAutoStart.ini", "[ZorvekMCPBridge]\nbAutoStart=False\n");
	FHostProcess Host({"--engine-ini", Ini});
	ASSERT_TRUE(Host.WaitForOutput("Zorvek MCP Bridge auto-start is disabled"));
	Host.Send("ZorvekMCPBridge.Status");
	ASSERT_TRUE(Host.WaitForOutput("Zorvek MCP Bridge status: stopped"));
	Host.Send("ZorvekMCPBridge.Start");
	ASSERT_TRUE(Host.WaitForOutput("Zorvek MCP Bridge listening at http://127.0.0.1:8765/mcp"));
	EXPECT_EQ(PostMcp(8765, "{\"id\":1,\"method\":\"ping\"}").Status, 200);
	Host.Send("no.such.command");
	ASSERT_TRUE(Host.WaitForOutput("Command not recognized: no.such.command"));
	Host.CloseInput();
	EXPECT_EQ(Host.WaitForExit(), 0);
	EXPECT_NE(Host.GetOutput().find("LogZorvekMCPBridge: Zorvek MCP Bridge module shutting down"), std::string::npos);
	EXPECT_NE(Host.GetOutput().find("LogZorvekMCPBridge: Display: Zorvek MCP Bridge stopped"), std::string::npos);

	// Lines read like the editor's output log; the Log verbosity is not written out.
	const std::regex LogLine(R"(\[\d{4}\.\d{2}\.\d{2}-\d{2}\.\d{2}\.\d{2}:\d{3}\]\[ *\d+\]LogZorvekMCPBridge: Zorvek MCP Bridge module starting)");
	EXPECT_TRUE(std::regex_search(Host.GetOutput(), LogLine)) << Host.GetOutput();
}

TEST(HostProcess, StartsByItselfAndStopsCleanlyOnCtrlC)
{
	FHostProcess Host({"--no-stdin"});
	ASSERT_TRUE(Host.WaitForOutput("Zorvek MCP Bridge running at http://127.0.0.1:8765/mcp"));
	const FRawHttpResponse Status = PostMcp(8765, "{\"id\":1,\"method\":\"tools/call\",\"params\":{\"name\":\"unreal_get_status\"}}");
	EXPECT_NE(Status.Body.find("SimulatedEditor"), std::string::npos);
	Host.Signal(SIGINT);
	EXPECT_EQ(Host.WaitForExit(), 0);
	EXPECT_NE(Host.GetOutput().find("Engine exit requested (reason: Ctrl-C)"), std::string::npos);
	EXPECT_FALSE(PostMcp(8765, "{\"method\":\"ping\"}").bReceived);
}
