// onkillscript: he leaves a cloud.
void main()
{
	void self = getlocalvar("self");
	clearspawnentry();
	setspawnentry("name", "Cloud");
	setspawnentry("coords", getentityproperty(self, "x"), getentityproperty(self, "z"), getentityproperty(self, "a"));
	spawn();
}
