// A small PNG reader for tests that look at captured images: 8-bit RGB or RGBA, not interlaced,
// with the zlib stream inflated here (stored, fixed and dynamic Huffman blocks), so an image is
// checked by code that shares nothing with the encoder that wrote it.
#pragma once

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

namespace ZorvekPngTestReader
{
	struct FImage
	{
		int Width = 0;
		int Height = 0;
		// R, G, B, A per pixel, row-major from the top left.
		std::vector<uint8_t> Rgba;

		const uint8_t* At(int X, int Y) const { return &Rgba[((size_t)Y * Width + X) * 4]; }
	};

	class FBitReader
	{
	public:
		explicit FBitReader(const std::vector<uint8_t>& InBytes, size_t InPosition)
			: Bytes(InBytes)
			, Position(InPosition)
		{
		}

		bool ReadBits(int Count, uint32_t& OutValue)
		{
			OutValue = 0;
			for (int Index = 0; Index < Count; ++Index)
			{
				if (Position >= Bytes.size())
				{
					return false;
				}
				OutValue |= (uint32_t)((Bytes[Position] >> BitIndex) & 1) << Index;
				if (++BitIndex == 8)
				{
					BitIndex = 0;
					++Position;
				}
			}
			return true;
		}

		void AlignToByte()
		{
			if (BitIndex != 0)
			{
				BitIndex = 0;
				++Position;
			}
		}

		bool ReadByte(uint8_t& OutByte)
		{
			if (Position >= Bytes.size())
			{
				return false;
			}
			OutByte = Bytes[Position++];
			return true;
		}

	private:
		const std::vector<uint8_t>& Bytes;
		size_t Position = 0;
		int BitIndex = 0;
	};

	// Canonical Huffman code from code lengths, decoded bit by bit (slow, and plenty for tests).
	class FHuffman
	{
	public:
		bool Build(const std::vector<int>& Lengths)
		{
			Counts.assign(16, 0);
			for (const int Length : Lengths)
			{
				++Counts[(size_t)Length];
			}
			Counts[0] = 0;
			std::vector<int> Offsets(16, 0);
			for (int Length = 1; Length < 16; ++Length)
			{
				Offsets[(size_t)Length] = Offsets[(size_t)Length - 1] + Counts[(size_t)Length - 1];
			}
			Symbols.assign(Lengths.size(), 0);
			for (size_t Symbol = 0; Symbol < Lengths.size(); ++Symbol)
			{
				if (Lengths[Symbol] != 0)
				{
					Symbols[(size_t)Offsets[(size_t)Lengths[Symbol]]++] = (int)Symbol;
				}
			}
			return true;
		}

		bool Decode(FBitReader& Reader, int& OutSymbol) const
		{
			int Code = 0;
			int First = 0;
			int Index = 0;
			for (int Length = 1; Length < 16; ++Length)
			{
				uint32_t Bit = 0;
				if (!Reader.ReadBits(1, Bit))
				{
					return false;
				}
				Code |= (int)Bit;
				const int Count = Counts[(size_t)Length];
				if (Code - Count < First)
				{
					OutSymbol = Symbols[(size_t)(Index + (Code - First))];
					return true;
				}
				Index += Count;
				First += Count;
				First <<= 1;
				Code <<= 1;
			}
			return false;
		}

	private:
		std::vector<int> Counts;
		std::vector<int> Symbols;
	};

	inline bool InflateCodes(FBitReader& Reader, const FHuffman& Literals, const FHuffman& Distances, std::vector<uint8_t>& Out)
	{
		static const int LengthBase[] = {3, 4, 5, 6, 7, 8, 9, 10, 11, 13, 15, 17, 19, 23, 27, 31, 35, 43, 51, 59, 67, 83, 99, 115, 131, 163, 195, 227, 258};
		static const int LengthExtra[] = {0, 0, 0, 0, 0, 0, 0, 0, 1, 1, 1, 1, 2, 2, 2, 2, 3, 3, 3, 3, 4, 4, 4, 4, 5, 5, 5, 5, 0};
		static const int DistanceBase[] = {1, 2, 3, 4, 5, 7, 9, 13, 17, 25, 33, 49, 65, 97, 129, 193, 257, 385, 513, 769, 1025, 1537, 2049, 3073, 4097, 6145, 8193, 12289, 16385, 24577};
		static const int DistanceExtra[] = {0, 0, 0, 0, 1, 1, 2, 2, 3, 3, 4, 4, 5, 5, 6, 6, 7, 7, 8, 8, 9, 9, 10, 10, 11, 11, 12, 12, 13, 13};
		for (;;)
		{
			int Symbol = 0;
			if (!Literals.Decode(Reader, Symbol))
			{
				return false;
			}
			if (Symbol < 256)
			{
				Out.push_back((uint8_t)Symbol);
				continue;
			}
			if (Symbol == 256)
			{
				return true;
			}
			Symbol -= 257;
			if (Symbol >= 29)
			{
				return false;
			}
			uint32_t Extra = 0;
			if (!Reader.ReadBits(LengthExtra[Symbol], Extra))
			{
				return false;
			}
			const int Length = LengthBase[Symbol] + (int)Extra;
			int DistanceSymbol = 0;
			if (!Distances.Decode(Reader, DistanceSymbol) || DistanceSymbol >= 30 || !Reader.ReadBits(DistanceExtra[DistanceSymbol], Extra))
			{
				return false;
			}
			const size_t Distance = (size_t)(DistanceBase[DistanceSymbol] + (int)Extra);
			if (Distance > Out.size())
			{
				return false;
			}
			for (int Index = 0; Index < Length; ++Index)
			{
				Out.push_back(Out[Out.size() - Distance]);
			}
		}
	}

	// A zlib stream (two header bytes, deflate blocks; the checksum is not verified).
	inline bool Inflate(const std::vector<uint8_t>& Zlib, std::vector<uint8_t>& Out)
	{
		if (Zlib.size() < 2 || (Zlib[0] & 0x0F) != 8 || ((Zlib[0] << 8) | Zlib[1]) % 31 != 0)
		{
			return false;
		}
		FBitReader Reader(Zlib, 2);
		uint32_t bFinal = 0;
		do
		{
			uint32_t Type = 0;
			if (!Reader.ReadBits(1, bFinal) || !Reader.ReadBits(2, Type))
			{
				return false;
			}
			if (Type == 0)
			{
				Reader.AlignToByte();
				uint8_t Bytes[4] = {};
				for (uint8_t& Byte : Bytes)
				{
					if (!Reader.ReadByte(Byte))
					{
						return false;
					}
				}
				const int Length = Bytes[0] | (Bytes[1] << 8);
				if ((Length ^ 0xFFFF) != (Bytes[2] | (Bytes[3] << 8)))
				{
					return false;
				}
				for (int Index = 0; Index < Length; ++Index)
				{
					uint8_t Byte = 0;
					if (!Reader.ReadByte(Byte))
					{
						return false;
					}
					Out.push_back(Byte);
				}
			}
			else if (Type == 1)
			{
				std::vector<int> Lengths(288, 8);
				for (int Symbol = 144; Symbol < 256; ++Symbol)
				{
					Lengths[(size_t)Symbol] = 9;
				}
				for (int Symbol = 256; Symbol < 280; ++Symbol)
				{
					Lengths[(size_t)Symbol] = 7;
				}
				FHuffman Literals;
				FHuffman Distances;
				Literals.Build(Lengths);
				Distances.Build(std::vector<int>(30, 5));
				if (!InflateCodes(Reader, Literals, Distances, Out))
				{
					return false;
				}
			}
			else if (Type == 2)
			{
				uint32_t LiteralCount = 0;
				uint32_t DistanceCount = 0;
				uint32_t CodeLengthCount = 0;
				if (!Reader.ReadBits(5, LiteralCount) || !Reader.ReadBits(5, DistanceCount) || !Reader.ReadBits(4, CodeLengthCount))
				{
					return false;
				}
				LiteralCount += 257;
				DistanceCount += 1;
				CodeLengthCount += 4;
				static const int Order[19] = {16, 17, 18, 0, 8, 7, 9, 6, 10, 5, 11, 4, 12, 3, 13, 2, 14, 1, 15};
				std::vector<int> CodeLengths(19, 0);
				for (uint32_t Index = 0; Index < CodeLengthCount; ++Index)
				{
					uint32_t Length = 0;
					if (!Reader.ReadBits(3, Length))
					{
						return false;
					}
					CodeLengths[(size_t)Order[Index]] = (int)Length;
				}
				FHuffman CodeLengthCode;
				CodeLengthCode.Build(CodeLengths);
				std::vector<int> Lengths;
				while (Lengths.size() < LiteralCount + DistanceCount)
				{
					int Symbol = 0;
					if (!CodeLengthCode.Decode(Reader, Symbol))
					{
						return false;
					}
					uint32_t Repeat = 0;
					if (Symbol < 16)
					{
						Lengths.push_back(Symbol);
					}
					else if (Symbol == 16)
					{
						if (Lengths.empty() || !Reader.ReadBits(2, Repeat))
						{
							return false;
						}
						const int Previous = Lengths.back();
						Lengths.insert(Lengths.end(), Repeat + 3, Previous);
					}
					else
					{
						const bool bShort = Symbol == 17;
						if (!Reader.ReadBits(bShort ? 3 : 7, Repeat))
						{
							return false;
						}
						Lengths.insert(Lengths.end(), Repeat + (bShort ? 3 : 11), 0);
					}
				}
				if (Lengths.size() != LiteralCount + DistanceCount)
				{
					return false;
				}
				FHuffman Literals;
				FHuffman Distances;
				Literals.Build(std::vector<int>(Lengths.begin(), Lengths.begin() + LiteralCount));
				Distances.Build(std::vector<int>(Lengths.begin() + LiteralCount, Lengths.end()));
				if (!InflateCodes(Reader, Literals, Distances, Out))
				{
					return false;
				}
			}
			else
			{
				return false;
			}
		} while (!bFinal);
		return true;
	}

	inline uint32_t ReadBigEndian(const std::vector<uint8_t>& Bytes, size_t Offset)
	{
		return ((uint32_t)Bytes[Offset] << 24) | ((uint32_t)Bytes[Offset + 1] << 16) | ((uint32_t)Bytes[Offset + 2] << 8) | Bytes[Offset + 3];
	}

	inline int Paeth(int Left, int Up, int UpLeft)
	{
		const int Estimate = Left + Up - UpLeft;
		const int ToLeft = Estimate > Left ? Estimate - Left : Left - Estimate;
		const int ToUp = Estimate > Up ? Estimate - Up : Up - Estimate;
		const int ToUpLeft = Estimate > UpLeft ? Estimate - UpLeft : UpLeft - Estimate;
		if (ToLeft <= ToUp && ToLeft <= ToUpLeft)
		{
			return Left;
		}
		return ToUp <= ToUpLeft ? Up : UpLeft;
	}

	// False, with the reason, for anything but a well-formed 8-bit RGB(A) PNG.
	inline bool Decode(const std::vector<uint8_t>& Png, FImage& OutImage, std::string& OutError)
	{
		static const uint8_t Signature[8] = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};
		if (Png.size() < 8 || !std::equal(Signature, Signature + 8, Png.begin()))
		{
			OutError = "no PNG signature";
			return false;
		}
		std::vector<uint8_t> Compressed;
		int Channels = 0;
		bool bEnded = false;
		for (size_t Offset = 8; Offset + 12 <= Png.size() && !bEnded;)
		{
			const uint32_t Length = ReadBigEndian(Png, Offset);
			const std::string Type(reinterpret_cast<const char*>(&Png[Offset + 4]), 4);
			if (Offset + 12 + Length > Png.size())
			{
				OutError = "chunk " + Type + " runs past the end";
				return false;
			}
			const size_t Data = Offset + 8;
			if (Type == "IHDR")
			{
				OutImage.Width = (int)ReadBigEndian(Png, Data);
				OutImage.Height = (int)ReadBigEndian(Png, Data + 4);
				const int BitDepth = Png[Data + 8];
				const int ColourType = Png[Data + 9];
				if (BitDepth != 8 || (ColourType != 2 && ColourType != 6) || Png[Data + 12] != 0)
				{
					OutError = "not an 8-bit, non-interlaced RGB or RGBA image";
					return false;
				}
				Channels = ColourType == 6 ? 4 : 3;
			}
			else if (Type == "IDAT")
			{
				Compressed.insert(Compressed.end(), Png.begin() + (std::ptrdiff_t)Data, Png.begin() + (std::ptrdiff_t)(Data + Length));
			}
			else if (Type == "IEND")
			{
				bEnded = true;
			}
			Offset += 12 + Length;
		}
		if (Channels == 0 || !bEnded)
		{
			OutError = "IHDR or IEND missing";
			return false;
		}
		std::vector<uint8_t> Filtered;
		if (!Inflate(Compressed, Filtered))
		{
			OutError = "the image data does not inflate";
			return false;
		}
		const size_t Stride = (size_t)OutImage.Width * Channels;
		if (Filtered.size() != (Stride + 1) * (size_t)OutImage.Height)
		{
			OutError = "the image data has the wrong size";
			return false;
		}
		std::vector<uint8_t> Rows(Stride * (size_t)OutImage.Height, 0);
		for (size_t Y = 0; Y < (size_t)OutImage.Height; ++Y)
		{
			const uint8_t Filter = Filtered[Y * (Stride + 1)];
			const uint8_t* Source = &Filtered[Y * (Stride + 1) + 1];
			uint8_t* Row = &Rows[Y * Stride];
			const uint8_t* Above = Y > 0 ? &Rows[(Y - 1) * Stride] : nullptr;
			for (size_t X = 0; X < Stride; ++X)
			{
				const int Left = X >= (size_t)Channels ? Row[X - (size_t)Channels] : 0;
				const int Up = Above ? Above[X] : 0;
				const int UpLeft = Above && X >= (size_t)Channels ? Above[X - (size_t)Channels] : 0;
				int Predicted = 0;
				switch (Filter)
				{
				case 0: Predicted = 0; break;
				case 1: Predicted = Left; break;
				case 2: Predicted = Up; break;
				case 3: Predicted = (Left + Up) / 2; break;
				case 4: Predicted = Paeth(Left, Up, UpLeft); break;
				default:
					OutError = "unknown row filter";
					return false;
				}
				Row[X] = (uint8_t)(Source[X] + Predicted);
			}
		}
		OutImage.Rgba.resize((size_t)OutImage.Width * OutImage.Height * 4);
		for (size_t Pixel = 0; Pixel < (size_t)OutImage.Width * OutImage.Height; ++Pixel)
		{
			for (int Channel = 0; Channel < 4; ++Channel)
			{
				OutImage.Rgba[Pixel * 4 + (size_t)Channel] = Channel < Channels ? Rows[Pixel * (size_t)Channels + (size_t)Channel] : 255;
			}
		}
		return true;
	}
}
