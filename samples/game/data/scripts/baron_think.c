// What the Baron has in mind. Below half of his health he boils over once:
// his boiler glows, two rats come running, and a kettle sets itself up.
#import "data/scripts/common.h"
#define HALF(full) ((full) / 2)

void call_rat(float dx, float z)
{
	clearspawnentry();
	setspawnentry("name", "Nib");
	setspawnentry("map", 2);
	setspawnentry("coords", openborvariant("xpos") + dx, z, 0);
	spawn();
}

void main()
{
	void self = getlocalvar("self");
	int now = openborvariant("elapsed_time");
	if(getentityproperty(self, "dead")){
		return;
	}
	if(getentityvar(self, "angry") != 1){
		if(getentityproperty(self, "health") < HALF(getentityproperty(self, "maxhealth"))){
			setentityvar(self, "angry", 1);
			setentityvar(self, "since", now);
			changeentityproperty(self, "colourmap", 1);
			performattack(self, openborconstant("ANI_ATTACK5"));
			call_rat(-20, 200);
			call_rat(openborvariant("hresolution") + 20, 240);
		}
		return;
	}
	// A new kettle every fifteen seconds; one at a time.
	if((now - getentityvar(self, "since")) % 900 == 899 && !getentityproperty(self, "attacking")){
		performattack(self, openborconstant("ANI_ATTACK5"));
	}
}
