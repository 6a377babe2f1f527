#include "support/quips.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace varnik {

namespace {

constexpr std::pair<const char*, const char*> kQuips[kQuipCount] = {
    {"Warning: Never argue with an idiot.", "They just drag you down to their level and beat you with experience."},
    {"Warning: Bones of partially crushed pilots may jam treads.", "Be sure to fully crush any pilots you run over."},
    {"Warning: Any treaded unit can be made airtight and snipeproof.",
     "No treaded unit seems to be able to be made WATERPROOF."},
    {"Warning: When in a battle, you may notice insignificant specks.",
     "They become much more significant if they have a chance to snipe you."},
    {"Warning: Due to circumstances beyond our control:",
     "Scavengers and Service Trucks refuse to stay out of the water."},
    {"Warning: In deathmatch and strategy games against cunning opponents:",
     "Sudden appearances of empty ships may be hazardous to your health."},
    {"Warning: For those that cannot take the heat:", "Stay away from the blast cannons."},
    {"Warning: Inner struggles are bad for your mental health.", "Take it out on the enemy instead."},
    {"Warning: When jumping over hills you may become trapped as you land.",
     "If this happens, pray that the enemy isn't around."},
    {"Warning: Lan parties can be dangerous:", "Your opponent can physically punch you."},
    {"Warning: Be sure to look both ways for incoming Constructors.",
     "You never know when one will be driving under the influence."},
    {"Warning: Never leave your bomber pilots alone.", "They tend to drink and fly all the time."},
    {"Warning: Never argue with a scavanger.", "You might end up having a scrap shortage due to a Stirke."},
    {"Warning: Surprise attacks can be dangerous.", "When your opponent remembers to switch off Chat All."},
    {"Warning: Things may not go the way you planned.", "DEAL WITH IT!"},
    {"Warning: The enemy is usually more dangerous than they appear.", "Exceptions may be made for newbs."},
    {"How are you Gentlemen?", "Warning: All your base are belong to us..."},
    {"Warning: Varnik must be really busy.", "You actually have time to read this!"},
    {"Warning: Your computer can't do math.", "If it could, you wouldn't see this!"},
};

}  // namespace

std::string Quip(int index) { return std::string(kQuips[index].first) + "\r\n" + kQuips[index].second; }

int QuipIndex(double random) {
  constexpr int kLastShown = kQuipCount - 2;
  return std::min(static_cast<int>(std::nearbyint(random * (kQuipCount - 1))), kLastShown);
}

}  // namespace varnik
