#pragma once

// The game's list of recyclers, to which `addrecy` adds a line.
namespace varnik {

constexpr char kRecyList[] = "RecyList.txt";
constexpr char kRecyListCopy[] = "tmp.recylist";  // the list without a mod's lines, until it takes the list's place

}  // namespace varnik
