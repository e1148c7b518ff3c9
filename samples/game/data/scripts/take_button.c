// A button changes its owner. Ten of them buy a bun's worth of health.
#import "data/scripts/common.h"

void main()
{
	void self = getlocalvar("self");
	void who = getlocalvar("target");
	int buttons;
	if(getentityproperty(who, "type") != openborconstant("TYPE_PLAYER")){
		return;
	}
	if(apart_z(self, who) > NEAR_Z){
		return;
	}
	buttons = getglobalvar("buttons") + 1;
	if(buttons >= 10){
		buttons -= 10;
		changeentityproperty(who, "health", getentityproperty(who, "health") + 40);
		playsound("data/sounds/eat.wav");
	} else {
		playsound("data/sounds/coin.wav");
	}
	setglobalvar("buttons", buttons);
	killentity(self);
}
