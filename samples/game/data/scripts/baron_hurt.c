// takedamagescript: now and then he lets off steam where he was hit.
void main()
{
	void self = getlocalvar("self");
	if(getlocalvar("damage") < 10){
		return;
	}
	clearspawnentry();
	setspawnentry("name", "Cloud");
	setspawnentry("coords", getentityproperty(self, "x") + 10, getentityproperty(self, "z") + 1, 60);
	spawn();
}
