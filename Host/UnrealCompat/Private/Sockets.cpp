#include "SocketSubsystem.h"
#include "Containers/StringConv.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

const FName FNetworkProtocolTypes::IPv4(TEXT("IPv4"));
const FName FNetworkProtocolTypes::IPv6(TEXT("IPv6"));

namespace
{
	class FPosixInternetAddr : public FInternetAddr
	{
	public:
		void SetIp(uint32 InAddr) override { Address = InAddr; bValid = true; }
		void SetIp(const TCHAR* InAddr, bool& bIsValid) override
		{
			in_addr Parsed{};
			bIsValid = ::inet_pton(AF_INET, UECompatToUtf8(FStringView(InAddr)).c_str(), &Parsed) == 1;
			if (bIsValid)
			{
				Address = ntohl(Parsed.s_addr);
				bValid = true;
			}
		}
		void GetIp(uint32& OutAddr) const override { OutAddr = Address; }
		void SetPort(int32 InPort) override { Port = InPort; }
		int32 GetPort() const override { return Port; }
		void SetAnyAddress() override { SetIp(0u); }
		void SetLoopbackAddress() override { SetIp(0x7F000001u); }
		FString ToString(bool bAppendPort) const override
		{
			FString Text = FString::Printf(TEXT("%u.%u.%u.%u"), (Address >> 24) & 0xFF, (Address >> 16) & 0xFF, (Address >> 8) & 0xFF, Address & 0xFF);
			return bAppendPort ? Text + FString::Printf(TEXT(":%d"), Port) : Text;
		}
		bool IsValid() const override { return bValid; }
		TSharedRef<FInternetAddr> Clone() const override { return MakeShared<FPosixInternetAddr>(*this); }

		sockaddr_in ToNative() const
		{
			sockaddr_in Native{};
			Native.sin_family = AF_INET;
			Native.sin_addr.s_addr = htonl(Address);
			Native.sin_port = htons((uint16)Port);
			return Native;
		}

	private:
		uint32 Address = 0;
		int32 Port = 0;
		bool bValid = false;
	};

	class FPosixSocket : public FSocket
	{
	public:
		FPosixSocket(int InDescriptor, const FString& InDescription) : FSocket(InDescription), Descriptor(InDescriptor) {}
		~FPosixSocket() override { Close(); }

		bool Close() override
		{
			if (Descriptor < 0)
			{
				return false;
			}
			::close(Descriptor);
			Descriptor = -1;
			return true;
		}
		bool Bind(const FInternetAddr& Addr) override
		{
			const sockaddr_in Native = static_cast<const FPosixInternetAddr&>(Addr).ToNative();
			return ::bind(Descriptor, reinterpret_cast<const sockaddr*>(&Native), sizeof(Native)) == 0;
		}
		bool Connect(const FInternetAddr& Addr) override
		{
			const sockaddr_in Native = static_cast<const FPosixInternetAddr&>(Addr).ToNative();
			return ::connect(Descriptor, reinterpret_cast<const sockaddr*>(&Native), sizeof(Native)) == 0;
		}
		bool Listen(int32 MaxBacklog) override { return ::listen(Descriptor, MaxBacklog) == 0; }
		bool SetReuseAddr(bool bAllowReuse) override
		{
			int Value = bAllowReuse ? 1 : 0;
			return ::setsockopt(Descriptor, SOL_SOCKET, SO_REUSEADDR, &Value, sizeof(Value)) == 0;
		}
		int32 GetPortNo() override
		{
			sockaddr_in Native{};
			socklen_t Length = sizeof(Native);
			return ::getsockname(Descriptor, reinterpret_cast<sockaddr*>(&Native), &Length) == 0 ? ntohs(Native.sin_port) : 0;
		}

	private:
		int Descriptor;
	};

	class FPosixSocketSubsystem : public ISocketSubsystem
	{
	public:
		using ISocketSubsystem::CreateSocket;
		FSocket* CreateSocket(const FName& SocketType, const FString& SocketDescription, const FName& ProtocolName) override
		{
			(void)ProtocolName;
			const int Kind = SocketType == NAME_DGram ? SOCK_DGRAM : SOCK_STREAM;
			const int Descriptor = ::socket(AF_INET, Kind, 0);
			return Descriptor < 0 ? nullptr : new FPosixSocket(Descriptor, SocketDescription);
		}
		void DestroySocket(FSocket* Socket) override { delete Socket; }
		TSharedRef<FInternetAddr> CreateInternetAddr() override { return MakeShared<FPosixInternetAddr>(); }
	};
}

ISocketSubsystem* ISocketSubsystem::Get(const FName& SubsystemName)
{
	static FPosixSocketSubsystem Instance;
	return (SubsystemName.IsNone() || SubsystemName == PLATFORM_SOCKETSUBSYSTEM) ? &Instance : nullptr;
}
