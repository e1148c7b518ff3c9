// Somebody stands on food.
#import "data/scripts/common.h"

void main()
{
	void self = getlocalvar("self");
	void eater = getlocalvar("target");
	int health;
	int most;
	if(getentityproperty(eater, "type") != openborconstant("TYPE_PLAYER")){
		return;
	}
	if(apart_z(self, eater) > NEAR_Z){
		return;
	}
	health = getentityproperty(eater, "health");
	most = getentityproperty(eater, "maxhealth");
	if(health >= most){
		return;
	}
	switch(getentityproperty(self, "name")){
		case "Bun":
			health += 40;
			break;
		default:
			health = most;
			break;
	}
	changeentityproperty(eater, "health", health);
	playsound("data/sounds/eat.wav");
	killentity(self);
}
