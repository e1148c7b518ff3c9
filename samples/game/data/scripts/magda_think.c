// Magda sees somebody in line with her, but not too near: she throws.
#import "data/scripts/common.h"

void main()
{
	void self = getlocalvar("self");
	void foe = findtarget(self);
	float dx;
	if(foe == NULL()){
		return;
	}
	if(getentityproperty(self, "attacking") || getentityproperty(self, "dead")){
		return;
	}
	if(getentityproperty(self, "animation") != "walk"){
		return;
	}
	dx = abs(getentityproperty(foe, "x") - getentityproperty(self, "x"));
	if(dx > 70 && dx < 230 && apart_z(self, foe) < 12 && rand() % 40 == 0){
		performattack(self, openborconstant("ANI_THROW1"));
	}
}
