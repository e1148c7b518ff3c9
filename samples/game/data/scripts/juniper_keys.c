// Runs when one of Juniper's keys goes down or up: jump again in the air.
#import "data/scripts/common.h"

void main()
{
	void self = getlocalvar("self");
	int slot = getlocalvar("player");
	float high = getentityproperty(self, "a");
	if(high < 2){
		setentityvar(self, "twice", 0);
		return;
	}
	if(playerkeys(slot, 1, "jump") && high > 14 && getentityvar(self, "twice") != 1){
		setentityvar(self, "twice", 1);
		tossentity(self, 5, 1.7 * side(self), 0);
		playsound("data/sounds/juniper_hi.wav");
	}
}
